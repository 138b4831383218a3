#pragma once

// True while the installer's maintenance process, recorded under HKLM, is alive.
bool installer_maintenance_running();
