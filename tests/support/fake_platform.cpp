#include "support/fake_platform.h"

namespace ovtest {

FakePlatform::FakePlatform()
{
    SetDate(2026, 11, 21);
    orderview::SetPlatform(this);
}

FakePlatform::~FakePlatform() { orderview::SetPlatform(nullptr); }

void FakePlatform::SetDate(int year, int month, int day, int hour, int minute, int second)
{
    now = orderview::LocalTime();
    now.wYear = static_cast<std::uint16_t>(year);
    now.wMonth = static_cast<std::uint16_t>(month);
    now.wDay = static_cast<std::uint16_t>(day);
    now.wHour = static_cast<std::uint16_t>(hour);
    now.wMinute = static_cast<std::uint16_t>(minute);
    now.wSecond = static_cast<std::uint16_t>(second);
}

int FakePlatform::MessageBox(const CString& text, const CString& caption, unsigned type)
{
    boxes.push_back({text, caption, type});
    if (answers.empty()) return defaultAnswer;
    const int answer = answers.front();
    answers.pop_front();
    return answer;
}

bool FakePlatform::SaveFileDialog(const orderview::SaveFileRequest& request, CString& path)
{
    saveRequests.push_back(request);
    if (saveAccepted) path = savePath;
    return saveAccepted;
}

int FakePlatform::GetSaveFilterIndex(const orderview::SaveFileRequest& request, const CString& path)
{
    return saveFilterIndex ? saveFilterIndex : IPlatform::GetSaveFilterIndex(request, path);
}

std::unique_ptr<orderview::IPrintJob> FakePlatform::StartPrintJob(const orderview::PrintRequest& request)
{
    printRequests.push_back(request);
    return printDialog ? printDialog(request) : nullptr;
}

std::vector<CString> FakePlatform::FindFiles(const CString& pattern)
{
    return orderview::SystemPlatform().FindFiles(pattern);
}

}  // namespace ovtest
