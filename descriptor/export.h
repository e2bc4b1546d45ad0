/// @file
/// Marks what leaves the library: the class cTypDescriptor and nothing else.

#ifndef TYPDESCRIPTOR_DESCRIPTOR_EXPORT_H
#define TYPDESCRIPTOR_DESCRIPTOR_EXPORT_H

/// Define TYPDESCRIPTOR_STATIC when the library is linked statically (the CMake package does it by itself).
#if defined(TYPDESCRIPTOR_STATIC)
#define TYPDESCRIPTOR_API
#elif defined(_WIN32)
#if defined(TYPDESCRIPTOR_BUILD)
#define TYPDESCRIPTOR_API __declspec(dllexport)
#else
#define TYPDESCRIPTOR_API __declspec(dllimport)
#endif
#else
#define TYPDESCRIPTOR_API __attribute__((visibility("default")))
#endif

#endif
