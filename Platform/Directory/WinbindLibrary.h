#pragma once

#include <array>
#include <cstdint>

namespace Platform::WinbindLibrary {

// What libwbclient.so.0 declares in <wbclient.h>, interface version 0.15. A host that has no use
// for it need not have it to build or run this.

inline constexpr char kFile[] = "libwbclient.so.0";

/// What most functions return.
enum Failure : int { kSuccess = 0, kNotAvailable = 6, kDomainNotFound = 7, kUnknownUser = 11 };

/// Of the types of names.
inline constexpr int kUser = 1;

struct SecurityIdentifier {
    std::uint8_t revision;
    std::uint8_t count;
    std::array<std::uint8_t, 6> authority;
    std::array<std::uint32_t, 15> parts;
};
struct InterfaceDetails {
    std::uint32_t interfaceVersion;
    char *winbindVersion;
    char separator;
    char *netbiosName;
    char *netbiosDomain;
    char *dnsDomain;
};
/// The beginning of it.
struct DomainInformation {
    char *shortName;
    char *dnsName;
};

inline constexpr char kGetInterfaceDetails[] = "wbcInterfaceDetails";
using GetInterfaceDetails = int(InterfaceDetails **details);

inline constexpr char kLookUpName[] = "wbcLookupName";
using LookUpName = int(const char *domain, const char *name, SecurityIdentifier *sid, int *type);

inline constexpr char kLookUpSID[] = "wbcLookupSid";
using LookUpSID = int(const SecurityIdentifier *sid, char **domain, char **name, int *type);

inline constexpr char kGetDomainInformation[] = "wbcDomainInfo";
using GetDomainInformation = int(const char *domain, DomainInformation **information);

inline constexpr char kFreeMemory[] = "wbcFreeMemory";
using FreeMemory = void(void *memory);

inline constexpr char kFailureText[] = "wbcErrorString";
using FailureText = const char *(int failure);

} // namespace Platform::WinbindLibrary
