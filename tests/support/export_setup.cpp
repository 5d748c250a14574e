#include "support/export_setup.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace ovtest {

ExportSetup::ExportSetup()
{
    host.csMainPath = folder.MainPath();
    orderview::SetHostServices(&host);
    folder.Write("sys/xls_head.txt", SampleHead());
    platform.saveAccepted = true;
}

ExportSetup::~ExportSetup() { orderview::SetHostServices(nullptr); }

void ExportSetup::SaveAs(const std::string& relative) { platform.savePath = CString(folder.File(relative)); }

std::string ExportSetup::SampleHead()
{
    std::ifstream in(std::string(ORDERVIEW_SAMPLE_DIR) + "/sys/xls_head.txt", std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

std::vector<std::string> ExportSetup::Names(const std::string& relative) const
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder.File(relative)))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace ovtest
