#pragma once

#include <cstdint>

uint32_t current_process_id() noexcept;
uint32_t current_thread_id() noexcept;
