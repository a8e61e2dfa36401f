// SPDX-License-Identifier: MIT
#include "variables.h"

#include "text.h"
#include "value_scanner.h"

#include <algorithm>

namespace orvan::css
{
namespace
{
/// What one value may come to.
constexpr std::size_t kMaxSubstituted = std::size_t{64} << 10;
/// Custom properties that stand in each other's values, and fallbacks in fallbacks.
constexpr int kMaxDepth = 64;

/// One var() or env().
struct Reference
{
	std::string_view name; ///< Empty for env().
	std::string_view fallback;
	bool hasFallback = false;
};

bool IsReference(const Token& token) noexcept
{
	return token.type == TokenType::function &&
		   (EqualsIgnoringCase(token.text, "var(") || EqualsIgnoringCase(token.text, "env("));
}

/// Reads a reference whose function the tokens stand on, and moves to its closing bracket. False when it is malformed.
bool TakeReference(Tokenizer& tokens, Arena& arena, Reference& reference)
{
	const bool isVariable = EqualsIgnoringCase(tokens.Current().text, "var(");
	tokens.Advance();
	tokens.SkipWhitespace();
	if (tokens.Current().type != TokenType::ident)
		return false;
	const std::string_view name = Unescape(tokens.Current().text, arena);
	if (isVariable && !name.starts_with("--"))
		return false;
	reference.name = isVariable ? name : std::string_view();
	tokens.Advance();
	tokens.SkipWhitespace();
	while (!isVariable && tokens.Current().type == TokenType::number)
	{
		tokens.Advance();
		tokens.SkipWhitespace();
	}
	if (tokens.Current().type == TokenType::comma)
	{
		const char* const begin = tokens.Current().text.data() + 1;
		reference.hasFallback = true;
		tokens.Advance();
		const char* end = begin;
		for (ValueScanner scanner; tokens.Current().type != TokenType::closeRound; end = scanner.End())
		{
			if (tokens.Current().type == TokenType::end)
				return false;
			scanner.TakeComponent(tokens);
		}
		reference.fallback = {begin, static_cast<std::size_t>(end - begin)};
	}
	return tokens.Current().type == TokenType::closeRound;
}
} // namespace

bool MayHaveVariables(std::string_view value) noexcept
{
	for (std::size_t at = value.find('('); at != value.npos; at = value.find('(', at + 1))
	{
		constexpr std::size_t kNameSize = 3;
		const std::string_view name = value.substr(at < kNameSize ? 0 : at - kNameSize, kNameSize);
		if (EqualsIgnoringCase(name, "var") || EqualsIgnoringCase(name, "env"))
			return true;
	}
	return false;
}

Variables::Variables(Variables* outer, VariableBudget& budget, std::pmr::memory_resource* memory)
	: _outer(outer), _budget(budget), _arena(memory), _entries(memory)
{
}

void Variables::Set(std::string_view name, std::string_view value)
{
	const auto is = [value](std::string_view keyword)
	{
		return EqualsIgnoringCase(value, keyword);
	};
	const bool isInherited = is("inherit") || is("unset") || is("revert") || is("revert-layer");
	_entries.insert_or_assign(name, Entry{value, isInherited     ? State::inherited
												 : is("initial") ? State::absent
																 : State::asWritten});
}

void Variables::SetCopy(std::string_view name, std::string_view value)
{
	Set(Keep(name), Keep(value));
}

Substitution Variables::Substitute(std::string_view value, std::string& result)
{
	std::string substituted;
	const Substitution outcome = Append(value, 0, substituted);
	if (outcome == Substitution::done)
		result = std::move(substituted);
	return outcome;
}

bool Variables::Find(std::string_view name, int depth, std::string_view& value)
{
	for (Variables* scope = this; scope != nullptr && _budget.steps != 0; scope = scope->_outer)
	{
		_budget.steps--;
		const auto found = scope->_entries.find(name);
		if (found == scope->_entries.end() || found->second.state == State::inherited)
			continue;
		value = found->second.value;
		if (!scope->Resolve(found->second, depth))
			return false;
		value = found->second.value;
		return true;
	}
	return false;
}

/// Brings an entry to the value that it has on its element. False when it has none.
bool Variables::Resolve(Entry& entry, int depth)
{
	if (entry.state == State::asWritten)
	{
		entry.state = State::inProgress; // Whoever comes back here meanwhile has gone in a circle.
		std::string value;
		const bool isDone =
			!MayHaveVariables(entry.value) || Append(entry.value, depth + 1, value) == Substitution::done;
		if (isDone && !value.empty())
			entry.value = Keep(value);
		entry.state = isDone && entry.state == State::inProgress ? State::known : State::absent;
	}
	else if (entry.state == State::inProgress)
		entry.state = State::absent; // All of the circle is without a value.
	return entry.state == State::known;
}

Substitution Variables::Append(std::string_view value, int depth, std::string& result)
{
	if (depth > kMaxDepth)
		return Substitution::impossible;
	const char* copied = value.data();
	Arena names(_arena.upstream_resource());
	for (Tokenizer tokens(value); tokens.Current().type != TokenType::end; tokens.Advance())
	{
		if (!IsReference(tokens.Current()))
			continue;
		const char* const begin = tokens.Current().text.data();
		Reference reference;
		if (!TakeReference(tokens, names, reference))
			return Substitution::malformed;
		// What is put in never joins with what stands beside it.
		if (!Append({copied, static_cast<std::size_t>(begin - copied)}, result) || !Append(" ", result))
			return Substitution::impossible;
		if (std::string_view found; !reference.name.empty() && Find(reference.name, depth, found))
		{
			if (!Append(found, result))
				return Substitution::impossible;
		}
		else if (!reference.hasFallback)
			return Substitution::impossible;
		else if (const Substitution inner = Append(reference.fallback, depth + 1, result); inner != Substitution::done)
			return inner;
		if (!Append(" ", result))
			return Substitution::impossible;
		copied = tokens.Current().text.data() + tokens.Current().text.size();
	}
	const char* const end = value.data() + value.size();
	return Append({copied, static_cast<std::size_t>(end - copied)}, result) ? Substitution::done
																			: Substitution::impossible;
}

/// False when that were too much.
bool Variables::Append(std::string_view characters, std::string& result)
{
	if (characters.size() > _budget.bytes || result.size() + characters.size() > kMaxSubstituted)
		return false;
	_budget.bytes -= characters.size();
	result += characters;
	return true;
}

std::string_view Variables::Keep(std::string_view text)
{
	auto* const kept = static_cast<char*>(_arena.allocate(std::max<std::size_t>(text.size(), 1), 1));
	std::copy(text.begin(), text.end(), kept);
	return {kept, text.size()};
}
} // namespace orvan::css
