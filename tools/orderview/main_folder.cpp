#include "main_folder.h"

#include <cstdio>

#include "order_data/host_api.h"

namespace ovcli {

MainFolder::MainFolder(const std::string& path)
    : host_(new orderview::DefaultHost(path.empty() ? orderview::DefaultHost::DefaultMainPath()
                                                    : CString(path)))
{
    // The default host has already printed each diagnostic to standard error.
    ok_ = host_->Diagnostics().empty();
    orderview::SetHostServices(host_.get());
}

MainFolder::~MainFolder() { orderview::SetHostServices(nullptr); }

CString MainFolder::Text(const CString& id) const { return host_->LangGetLangString(id); }

}  // namespace ovcli
