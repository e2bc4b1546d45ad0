/// @file
/// Marks what leaves the host library.

#ifndef TYPDESCRIPTOR_HOST_EXPORT_H
#define TYPDESCRIPTOR_HOST_EXPORT_H

/// Define TYPDESCRIPTOR_HOST_STATIC when the library is linked statically (the CMake package does it by itself).
#if defined(TYPDESCRIPTOR_HOST_STATIC)
#define TYPDESCRIPTOR_HOST_API
#elif defined(_WIN32)
#if defined(TYPDESCRIPTOR_HOST_BUILD)
#define TYPDESCRIPTOR_HOST_API __declspec(dllexport)
#else
#define TYPDESCRIPTOR_HOST_API __declspec(dllimport)
#endif
#else
#define TYPDESCRIPTOR_HOST_API __attribute__((visibility("default")))
#endif

#endif
