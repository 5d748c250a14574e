// Symbol visibility for the orderview shared library.
#pragma once

#if defined(_WIN32)
#  if defined(ORDERVIEW_BUILDING)
#    define ORDERVIEW_API __declspec(dllexport)
#  else
#    define ORDERVIEW_API __declspec(dllimport)
#  endif
#else
#  define ORDERVIEW_API __attribute__((visibility("default")))
#endif
