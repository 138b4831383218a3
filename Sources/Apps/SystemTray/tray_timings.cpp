#include "tray_timings.h"

#ifdef VELDRAKE_SHORT_TIMERS
const tray_timings TRAY_TIMINGS{3000, 2000, 2000, 60000, 3000, 60000, 3000, 3000, true};
#else
const tray_timings TRAY_TIMINGS{3000, 60000, 15000, 10800000, 180000, 3600000, 10000, 10000, false};
#endif
