// SPDX-License-Identifier: MIT
/// `Result<T>`: a value or an error, and `ORVAN_TRY` to pass errors up.
///
///     Result<Int> Count(const Url& url)
///     {
///         InputStream stream = ORVAN_TRY(url.OpenInputStream());   // leaves with the error, or yields the value
///         ...
///         return count;
///     }
#pragma once

#include "orvan/error.h"

#include <memory>
#include <type_traits>
#include <utility>

namespace orvan
{

/// A value of type `T`, or the error that kept it from being made. Must be looked at: use `ORVAN_TRY` to pass an error
/// up, `IsOk` to handle it, `IgnoreResult` to drop it on purpose.
template <typename T>
class [[nodiscard]] Result
{
public:
	using ValueType = T;

	Result(const T& value) requires std::is_copy_constructible_v<T> : _value(value)
	{
	}

	Result(T&& value) noexcept : _value(std::move(value))
	{
	}

	Result(Error error) noexcept : _error(error.Release())
	{
	}

	/// Moves the value; an error is shared, so that `other` keeps its state.
	Result(Result&& other) noexcept
	{
		if (other.IsOk()) [[likely]]
			std::construct_at(std::addressof(_value), std::move(other._value));
		else
			_error = other.GetError().Release();
	}

	Result& operator=(Result&& other) noexcept
	{
		if (this != &other)
		{
			std::destroy_at(this);
			std::construct_at(this, std::move(other));
		}
		return *this;
	}

	~Result()
	{
		if (_error == nullptr) [[likely]]
			std::destroy_at(std::addressof(_value));
		else
			Host().releaseError(_error);
	}

	/// True when there is a value; false when there is an error.
	bool IsOk() const noexcept
	{
		return _error == nullptr;
	}

	/// The value; only when `IsOk`.
	T& GetValue() & noexcept
	{
		return _value;
	}

	const T& GetValue() const& noexcept
	{
		return _value;
	}

	/// The value, moved out; only when `IsOk`.
	T GetValue() && noexcept
	{
		return std::move(_value);
	}

	/// The value, or `fallback` when there is an error.
	T GetValueOr(T fallback) && noexcept
	{
		return IsOk() ? std::move(_value) : std::move(fallback);
	}

	/// A reference to the error; only when not `IsOk`.
	Error GetError() const noexcept
	{
		if (_error->count.load(std::memory_order_relaxed) != 0)
			_error->count.fetch_add(1, std::memory_order_relaxed);
		return Error(_error);
	}

private:
	ErrorBlock* _error = nullptr;
	union
	{
		T _value;
	};
};

/// Success, or the error that prevented it.
template <>
class [[nodiscard]] Result<void>
{
public:
	using ValueType = void;

	/// Success.
	Result() noexcept = default;

	Result(Error error) noexcept : _error(error.Release())
	{
	}

	Result(Result&& other) noexcept : _error(std::exchange(other._error, nullptr))
	{
	}

	Result& operator=(Result&& other) noexcept
	{
		std::swap(_error, other._error);
		return *this;
	}

	~Result()
	{
		if (_error != nullptr) [[unlikely]]
			Host().releaseError(_error);
	}

	/// True when it worked; false when there is an error.
	bool IsOk() const noexcept
	{
		return _error == nullptr;
	}

	/// Nothing: there for code that handles results of any type.
	void GetValue() const noexcept
	{
	}

	/// A reference to the error; only when not `IsOk`.
	Error GetError() const noexcept
	{
		if (_error->count.load(std::memory_order_relaxed) != 0)
			_error->count.fetch_add(1, std::memory_order_relaxed);
		return Error(_error);
	}

private:
	ErrorBlock* _error = nullptr;
};

/// Drops a result on purpose, an error included.
template <typename T>
void IgnoreResult(Result<T>&&) noexcept
{
}

/// Turns what a function of the service table returned (null for success) into a result.
inline Result<void> ResultOf(ErrorBlock* error) noexcept
{
	if (error != nullptr) [[unlikely]]
		return Error(error);
	return {};
}

inline Result<String> String::Create(std::string_view text) noexcept
{
	String result;
	if (text.empty())
		return result;
	void* memory = text.size() < UINT32_MAX ? Host().allocate(sizeof(Block) + text.size() + 1) : nullptr;
	if (memory == nullptr) [[unlikely]]
		return OutOfMemoryError();
	result._block = new (memory) Block{{1}, static_cast<std::uint32_t>(text.size()), {0}};
	std::memcpy(result._block->Text(), text.data(), text.size());
	result._block->Text()[text.size()] = '\0';
	return result;
}

} // namespace orvan

/// Evaluates an expression of type `Result<T>`: leaves the surrounding function with its error, or yields its value.
#define ORVAN_TRY(...) ORVAN_TRY_NAMED(ORVAN_TRY_NAME(__COUNTER__), __VA_ARGS__)

// The counter gives each use a name of its own, so that one can stand inside another.
#define ORVAN_TRY_NAME(number) ORVAN_TRY_JOIN(tryResult, number)
#define ORVAN_TRY_JOIN(a, b) a##b
#define ORVAN_TRY_NAMED(name, ...)                                                                                     \
	__extension__({                                                                                                    \
		auto&& name = (__VA_ARGS__);                                                                                   \
		if (!name.IsOk()) [[unlikely]]                                                                                 \
			return name.GetError();                                                                                    \
		std::forward<decltype(name)>(name).GetValue();                                                                 \
	})
