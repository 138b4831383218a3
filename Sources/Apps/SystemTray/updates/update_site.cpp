#include "updates/update_site.h"

#ifdef VELDRAKE_SHORT_TIMERS
const char* const UPDATE_WEB_HOST = VELDRAKE_TEST_WEB_HOST;
#else
const char* const UPDATE_WEB_HOST = VELDRAKE_WEB_HOST;
#endif
