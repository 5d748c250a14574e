#include "settings/client_log.h"

#include <string>

#include "platform/file_system.h"
#include "order_data/host_api.h"
#include "platform/platform.h"

bool g_ClientbWriteLog(CString& text)
{
    const CString line = "\n" + text + "\n";
    char category[] = "";
    BKOrderInterface::GetBKInterface().vWriteDebugLog(category, 0, line);
    return true;
}

void AppendDailyLog(const char* text)
{
    const orderview::LocalTime now = orderview::GetPlatform().GetLocalTime();
    CString fileName;
    fileName.Format("%s\\Log\\%04d%02d%02d.log", BKOrderInterface::GetBKInterface().PathGetMainPath().GetString(),
                    now.wYear, now.wMonth, now.wDay);
    orderview::AppendToFile(fileName, std::string(text ? text : "") + "\n");
}
