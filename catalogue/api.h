/// \file
/// Export macro of the engine library, which holds the catalogue and the engine.
#pragma once

#if defined(_WIN32)
#if defined(RASTEROPS_ENGINE_BUILDING)
#define RASTEROPS_ENGINE_API __declspec(dllexport)
#else
#define RASTEROPS_ENGINE_API __declspec(dllimport)
#endif
#else
#define RASTEROPS_ENGINE_API __attribute__((visibility("default")))
#endif
