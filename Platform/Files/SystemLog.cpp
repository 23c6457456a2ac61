#include "SystemLog.h"

#include <syslog.h>

namespace Platform {

void writeSystemLog(const std::string &message)
{
    syslog(LOG_NOTICE, "%s", message.c_str());
}

} // namespace Platform
