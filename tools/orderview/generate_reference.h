// The reference tables of a synthetic main folder: settings, quotes, accounts and checks.
#pragma once

#include <string>
#include <vector>

namespace orderview {
namespace generate {

struct ReferenceFile {
    std::string name;  // below "sys"
    std::string text;
};

// Every file of "sys" except the orders and deals, the same on every call.
std::vector<ReferenceFile> ReferenceFiles();

}  // namespace generate
}  // namespace orderview
