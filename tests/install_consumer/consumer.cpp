#include <cstdio>
#include <cstring>

#include <orderview.h>

// A host of its own: everything from the library's table host, the language from code.
class ConsumerHost : public orderview::TableHost {
protected:
    CString LookUpLanguage(const CString& id) override { return id == "IDS_HELLO" ? "hello" : id; }
};

int main()
{
    ConsumerHost host;
    orderview::SetHostServices(&host);
    const CString text = BKOrderInterface::GetBKInterface().LangGetLangString("IDS_HELLO") + " " +
                         g_cszNormalizCstring(g_cszNormalizDouble(1234.5));
    std::puts(text);
    orderview::SetHostServices(nullptr);
    return std::strcmp(text, "hello 1,234.5") == 0 ? 0 : 1;
}
