// Export macros of the three shared libraries. All are built with the default
// (public) symbol visibility; the macros mark the exported interface so that
// a build with hidden visibility keeps it.
#ifndef ORV_CORE_API_ORVEXPORT_H
#define ORV_CORE_API_ORVEXPORT_H

#if defined(__GNUC__) || defined(__clang__)
#define ORV_EXPORT __attribute__((visibility("default")))
#else
#define ORV_EXPORT
#endif

#define ORVCORE_API ORV_EXPORT
#define ORVCIMXML_API ORV_EXPORT
#define ORVWRITE_API ORV_EXPORT

#endif
