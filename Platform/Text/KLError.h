#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>

/// What went wrong, as a value that is handed up to whoever decides about it.
///
/// Where a function takes a place for an error, the place is set when the function fails and stays
/// as it was when it succeeds. It may be null only where the function says so.
///
/// The information dictionary holds at most two entries, so each is a member here: the description
/// (`NSLocalizedDescriptionKey`) and the underlying error (`NSUnderlyingErrorKey`). Copies share
/// the underlying error, which never changes.
class KLError {
public:
    /// @param domain       who speaks, e.g. "KLToolkitProcessorErrorDomain"
    /// @param code         the number within that domain
    /// @param description  for people; absent when there is nothing to say
    KLError(std::string domain, int code, std::optional<std::string> description)
        : _domain(std::move(domain)), _code(code), _description(std::move(description))
    {
    }
    /// The same, with the error that led to this one.
    KLError(std::string domain, int code, std::optional<std::string> description,
            KLError underlying)
        : KLError(std::move(domain), code, std::move(description))
    {
        _underlying = std::make_shared<const KLError>(std::move(underlying));
    }

    // The references are good as long as this error lives and is not assigned to.

    const std::string &domain() const { return _domain; }
    int code() const { return _code; }
    /// The entry under `NSLocalizedDescriptionKey`; nullopt when there is none.
    const std::optional<std::string> &description() const { return _description; }
    /// The entry under `NSUnderlyingErrorKey`; null when there is none. Owned by this error.
    const KLError *underlying() const { return _underlying.get(); }
    /// The underlying error's description; nullopt when either is missing.
    std::optional<std::string> underlyingDescription() const
    {
        return _underlying ? _underlying->description() : std::nullopt;
    }

private:
    std::string _domain;
    int _code;
    std::optional<std::string> _description;
    std::shared_ptr<const KLError> _underlying;
};
