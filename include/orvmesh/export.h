#pragma once

// ORVMESH_API marks what the shared library shows; everything else in it is hidden.
#if defined(_WIN32)
#if defined(ORVMESH_BUILDING_LIBRARY)
#define ORVMESH_API __declspec(dllexport)
#else
#define ORVMESH_API __declspec(dllimport)
#endif
#else
#define ORVMESH_API __attribute__((visibility("default")))
#endif
