// Which names leave the library. The one place that knows the system it is built for.
//
// QV_BUILDING_QUIVER is defined while the library itself is compiled, QV_STATIC when the library's
// objects are linked straight into a program.

#pragma once

#if defined(_WIN32)
#if defined(QV_BUILDING_QUIVER)
#define QV_API __declspec(dllexport)
#elif defined(QV_STATIC)
#define QV_API
#else
#define QV_API __declspec(dllimport)
#endif
#else
#define QV_API __attribute__((visibility("default")))
#endif
