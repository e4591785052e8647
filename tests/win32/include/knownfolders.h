/* Identifiers of known folders. */
#pragma once
#include <guiddef.h>

typedef GUID KNOWNFOLDERID;
#ifdef __cplusplus
typedef const KNOWNFOLDERID& REFKNOWNFOLDERID;
extern "C" const KNOWNFOLDERID FOLDERID_ProgramData;
#else
typedef const KNOWNFOLDERID* REFKNOWNFOLDERID;
extern const KNOWNFOLDERID FOLDERID_ProgramData;
#endif
