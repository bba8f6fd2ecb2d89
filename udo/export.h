// Marks what the shared library exports.
#pragma once

#if defined(_WIN32)
#if defined(QELFMT_BUILDING)
#define QELFMT_API __declspec(dllexport)
#else
#define QELFMT_API __declspec(dllimport)
#endif
#else
#define QELFMT_API __attribute__((visibility("default")))
#endif
