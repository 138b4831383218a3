#pragma once

// True when apps are set to the dark theme. Polled where needed, never subscribed to.
bool is_dark_mode() noexcept;
