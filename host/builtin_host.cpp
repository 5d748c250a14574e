// Installs the file-backed default host whenever the front end has installed none.
#include "host/default_host.h"

namespace orderview {

IHostServices& detail::BuiltInHost()
{
    static DefaultHost host;
    return host;
}

}  // namespace orderview
