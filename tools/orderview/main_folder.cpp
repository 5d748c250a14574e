#include "main_folder.h"

#include <cstdio>

#include "order_data/host_api.h"

namespace ovcli {

MainFolder::MainFolder(const std::string& path)
    : host_(new orderview::DefaultHost(path.empty() ? orderview::DefaultHost::DefaultMainPath() : CString(path),
                                       orderview::DefaultHost::Tables::WithoutOrdersAndDeals, CString(language_)))
{
    // The default host has already printed each diagnostic to standard error.
    ok_ = host_->Diagnostics().empty();
    orderview::SetHostServices(host_.get());
}

MainFolder::~MainFolder() { orderview::SetHostServices(nullptr); }

CString MainFolder::Text(const CString& id) const { return host_->LangGetLangString(id); }

bool MainFolder::Report(const std::vector<CString>& diagnostics)
{
    for (const CString& message : diagnostics) std::fprintf(stderr, "orderview: %s\n", message.GetString());
    return diagnostics.empty();
}

}  // namespace ovcli
