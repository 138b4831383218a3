#pragma once

// The maker's web host for the version text and the installers. The exe built for the end-to-end
// tests compiles update_site.cpp again with a loopback host, served by the tests.
extern const char* const UPDATE_WEB_HOST;
