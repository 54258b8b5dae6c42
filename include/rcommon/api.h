/// \file
/// Export macro of the shared library.
#pragma once

#if defined(_WIN32)
#if defined(RASTEROPS_BUILDING)
#define RASTEROPS_API __declspec(dllexport)
#else
#define RASTEROPS_API __declspec(dllimport)
#endif
#else
#define RASTEROPS_API __attribute__((visibility("default")))
#endif
