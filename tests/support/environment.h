// Sets or removes an environment variable of the test process, on POSIX systems and Windows.
#pragma once

namespace ovtest {

// A null `value` removes the variable.
void SetEnvironment(const char* name, const char* value);

}  // namespace ovtest
