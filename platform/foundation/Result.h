#pragma once

#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace platform {

/// A value, or one line that says why there is none, in words fit for a person.
///
///     Result<Value> read = readPropertyList(bytes);
///     if (!read) return complain(read.error());
template<class T>
class Result {
  public:
    Result(T value) : contents_(std::in_place_index<0>, std::move(value)) {}
    static Result failure(std::string why) { return Result(std::in_place_index<1>, std::move(why)); }

    explicit operator bool() const { return contents_.index() == 0; }
    [[nodiscard]] const T& value() const& { return std::get<0>(contents_); }
    [[nodiscard]] T&& value() && { return std::get<0>(std::move(contents_)); }
    [[nodiscard]] const std::string& error() const { return std::get<1>(contents_); }

  private:
    template<std::size_t I, class U>
    Result(std::in_place_index_t<I> which, U&& u) : contents_(which, std::forward<U>(u)) {}
    std::variant<T, std::string> contents_;
};

/// The same for an operation without a value: success, or one line that says why not.
///
///     if (Result<void> loaded = bundle->load(); !loaded) return complain(loaded.error());
template<>
class Result<void> {
  public:
    Result() = default;
    static Result failure(std::string why) {
        Result failed;
        failed.why_ = std::move(why);
        return failed;
    }

    explicit operator bool() const { return !why_; }
    [[nodiscard]] const std::string& error() const { return why_.value(); }

  private:
    std::optional<std::string> why_;
};

} // namespace platform
