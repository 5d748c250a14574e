#include "console_platform.h"

namespace ovcli {

ConsolePlatform::ConsolePlatform(bool answerYes) : answerYes_(answerYes) { orderview::SetPlatform(this); }

ConsolePlatform::~ConsolePlatform() { orderview::SetPlatform(nullptr); }

void ConsolePlatform::AnswerSaveDialog(const CString& path, int filterIndex)
{
    savePath_ = path;
    filterIndex_ = filterIndex;
}

std::vector<ConsolePlatform::Box> ConsolePlatform::TakeBoxes()
{
    std::vector<Box> boxes;
    boxes.swap(boxes_);
    return boxes;
}

int ConsolePlatform::MessageBox(const CString& text, const CString&, unsigned type)
{
    boxes_.push_back(Box{text, type});
    switch (type & 0xF) {
    case orderview::kMbYesNo:
    case orderview::kMbYesNoCancel:
        return answerYes_ ? orderview::kIdYes : orderview::kIdNo;
    case orderview::kMbOkCancel:
        return answerYes_ ? orderview::kIdOk : orderview::kIdCancel;
    default:
        return orderview::kIdOk;
    }
}

bool ConsolePlatform::SaveFileDialog(const orderview::SaveFileRequest&, CString& path)
{
    if (savePath_.IsEmpty()) return false;
    path = savePath_;
    return true;
}

}  // namespace ovcli

namespace ovcli {

std::unique_ptr<orderview::IPrintJob> ConsolePlatform::StartPrintJob(const orderview::PrintRequest& request)
{
    if (printPath_.IsEmpty()) return nullptr;
    return orderview::StartPdfPrintJob(printPath_, request);
}

}  // namespace ovcli
