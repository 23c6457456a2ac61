#pragma once

namespace Platform::SSSDLibrary {

// What libsss_nss_idmap.so.0 declares in <sss_nss_idmap.h>, version SSS_NSS_IDMAP_0.6.0. A host
// that has no use for it need not have it to build or run this.

inline constexpr char kFile[] = "libsss_nss_idmap.so.0";

struct KeyAndValue {
    char *key; ///< null behind the last one
    char *value;
};

inline constexpr char kGetOriginal[] = "sss_nss_getorigbyusername_timeout";
/// The entry that a user was made of. @return a system error number
/// @param timeout  in milliseconds
using GetOriginal = int(const char *name, unsigned timeout, KeyAndValue **list, int *type);

inline constexpr char kFreeList[] = "sss_nss_free_kv";
using FreeList = void(KeyAndValue *list);

} // namespace Platform::SSSDLibrary
