#pragma once

#include <QtGlobal>

// Everything the reference host exports to the cores it loads.
#if defined(IPHOST_LIBRARY)
#    define IPHOST_EXPORT Q_DECL_EXPORT
#else
#    define IPHOST_EXPORT Q_DECL_IMPORT
#endif
