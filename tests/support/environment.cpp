#include "support/environment.h"

#include <cstdlib>

namespace ovtest {

void SetEnvironment(const char* name, const char* value)
{
#ifdef _WIN32
    // An empty value removes a variable on Windows; an empty one cannot be set there.
    ::_putenv_s(name, value ? value : "");
#else
    if (value)
        ::setenv(name, value, 1);
    else
        ::unsetenv(name);
#endif
}

}  // namespace ovtest
