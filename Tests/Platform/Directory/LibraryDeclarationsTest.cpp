// What we say of the libraries that are opened at run time is what their own headers say.

#include "SSSDLibrary.h"
#include "WinbindLibrary.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <wbclient.h>

// Not every system has it: Debian testing is at times without SSSD.
#if __has_include(<sss_nss_idmap.h>)
#include <sss_nss_idmap.h>
#define KL_HAVE_SSSD
#endif

using namespace Platform;

TEST(LibraryDeclarationsTest, SSSDsListIsLaidOutLikeThis)
{
#ifdef KL_HAVE_SSSD
    EXPECT_EQ(sizeof(sss_nss_kv), sizeof(SSSDLibrary::KeyAndValue));
    EXPECT_EQ(offsetof(sss_nss_kv, value), offsetof(SSSDLibrary::KeyAndValue, value));
    EXPECT_EQ(sizeof(sss_id_type), sizeof(int));
#else
    GTEST_SKIP() << "no sss_nss_idmap.h: the package libsss-nss-idmap-dev brings it";
#endif
}

TEST(LibraryDeclarationsTest, WinbindsStructuresAreLaidOutLikeThis)
{
    using namespace WinbindLibrary;
    EXPECT_EQ(sizeof(wbcDomainSid), sizeof(SecurityIdentifier));
    EXPECT_EQ(offsetof(wbcDomainSid, sub_auths), offsetof(SecurityIdentifier, parts));
    EXPECT_EQ(sizeof(struct wbcInterfaceDetails), sizeof(InterfaceDetails));
    EXPECT_EQ(offsetof(struct wbcInterfaceDetails, winbind_separator),
              offsetof(InterfaceDetails, separator));
    EXPECT_EQ(offsetof(struct wbcInterfaceDetails, netbios_domain),
              offsetof(InterfaceDetails, netbiosDomain));
    EXPECT_EQ(offsetof(struct wbcDomainInfo, dns_name), offsetof(DomainInformation, dnsName));
}

TEST(LibraryDeclarationsTest, WinbindsNumbersAreThese)
{
    EXPECT_EQ(WBC_ERR_SUCCESS, static_cast<int>(WinbindLibrary::kSuccess));
    EXPECT_EQ(WBC_ERR_WINBIND_NOT_AVAILABLE, static_cast<int>(WinbindLibrary::kNotAvailable));
    EXPECT_EQ(WBC_ERR_DOMAIN_NOT_FOUND, static_cast<int>(WinbindLibrary::kDomainNotFound));
    EXPECT_EQ(WBC_ERR_UNKNOWN_USER, static_cast<int>(WinbindLibrary::kUnknownUser));
    EXPECT_EQ(WBC_SID_NAME_USER, WinbindLibrary::kUser);
    EXPECT_EQ(sizeof(wbcErr), sizeof(int));
    EXPECT_EQ(sizeof(wbcSidType), sizeof(int));
}
