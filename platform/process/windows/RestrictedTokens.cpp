#include "platform/process/windows/RestrictedTokens.h"

#include <cstddef>
#include <vector>

namespace cinedisc {

namespace {

/// What a token tells of itself; empty when it does not.
std::vector<std::max_align_t> information(HANDLE token, TOKEN_INFORMATION_CLASS kind) {
    DWORD size = 0;
    GetTokenInformation(token, kind, nullptr, 0, &size);
    std::vector<std::max_align_t> content(size / sizeof(std::max_align_t) + 1);
    if (!GetTokenInformation(token, kind, content.data(), size, &size)) content.clear();
    return content;
}

struct WellKnownSid {
    explicit WellKnownSid(WELL_KNOWN_SID_TYPE type) {
        DWORD size = sizeof bytes;
        good = CreateWellKnownSid(type, nullptr, bytes, &size);
    }

    alignas(DWORD) std::byte bytes[SECURITY_MAX_SID_SIZE];
    bool good;
};

/// From medium, which the user's programs have, down to low: what is above cannot be written.
bool lowerIntegrity(HANDLE token) {
    WellKnownSid low(WinLowLabelSid);
    TOKEN_MANDATORY_LABEL label{{low.bytes, SE_GROUP_INTEGRITY}};
    return low.good && SetTokenInformation(token, TokenIntegrityLevel, &label,
                                           static_cast<DWORD>(sizeof label + GetLengthSid(low.bytes)));
}

Handle restricted(HANDLE token, std::vector<SID_AND_ATTRIBUTES>& disabled,
                  std::vector<SID_AND_ATTRIBUTES>& restricting) {
    HANDLE made = nullptr;
    if (!CreateRestrictedToken(token, DISABLE_MAX_PRIVILEGE, static_cast<DWORD>(disabled.size()),
                               disabled.data(), 0, nullptr, static_cast<DWORD>(restricting.size()),
                               restricting.data(), &made))
        return nullptr;
    Handle result(made);
    return lowerIntegrity(made) ? std::move(result) : nullptr;
}

Handle impersonating(HANDLE token) {
    HANDLE made = nullptr;
    const bool good = token && DuplicateTokenEx(token, TOKEN_IMPERSONATE | TOKEN_QUERY, nullptr,
                                                SecurityImpersonation, TokenImpersonation, &made);
    return Handle(good ? made : nullptr);
}

}  // namespace

RestrictedTokens RestrictedTokens::make() {
    HANDLE opened = nullptr;
    constexpr DWORD rights = TOKEN_DUPLICATE | TOKEN_ASSIGN_PRIMARY | TOKEN_QUERY | TOKEN_ADJUST_DEFAULT;
    if (!OpenProcessToken(GetCurrentProcess(), rights, &opened)) return {};
    const Handle own(opened);
    auto userContent = information(opened, TokenUser), groupContent = information(opened, TokenGroups);
    if (userContent.empty() || groupContent.empty()) return {};
    std::vector<SID_AND_ATTRIBUTES> everybody{
        {reinterpret_cast<TOKEN_USER*>(userContent.data())->User.Sid, 0}};
    auto* const groups = reinterpret_cast<TOKEN_GROUPS*>(groupContent.data());
    for (DWORD i = 0; i < groups->GroupCount; ++i)
        if (!(groups->Groups[i].Attributes & SE_GROUP_INTEGRITY))
            everybody.push_back({groups->Groups[i].Sid, 0});

    WellKnownSid nobody(WinNullSid);
    if (!nobody.good) return {};
    std::vector<SID_AND_ATTRIBUTES> none, onlyNobody{{nobody.bytes, 0}};
    RestrictedTokens tokens;
    tokens.lasting = restricted(opened, everybody, onlyNobody);
    // A restricted process may take on a token only when that is a restricted one as well: this one is, to
    // everything that the user is.
    tokens.atStart = impersonating(restricted(opened, none, everybody).get());
    return tokens;
}

}  // namespace cinedisc
