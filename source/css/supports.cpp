// SPDX-License-Identifier: MIT
#include "supports.h"

#include "conditions.h"
#include "selector_parser.h"
#include "value_scanner.h"

#include <algorithm>
#include <iterator>

namespace orvan::css
{
namespace
{
/// "(fill: red)", "selector(a > b)", "at-rule(@media)".
class SupportsTest final : public ConditionTest
{
public:
	SupportsTest(const ReadOptions& options, FeatureTest* features) : _options(options), _features(features)
	{
	}

	Truth WhenNotUnderstood() const override
	{
		return Truth::no;
	}

	bool Test(Tokenizer& tokens, Truth& truth) override
	{
		const Token opening = tokens.Current();
		Tokenizer behind = tokens;
		ValueScanner scanner;
		scanner.TakeComponent(behind);
		tokens.Advance();
		tokens.SkipWhitespace();
		bool holds;
		if (opening.type == TokenType::openRound)
		{
			// A condition in parentheses begins otherwise.
			if (tokens.Current().type != TokenType::ident || TakeWord(tokens, "not"))
				return false;
			const char* const end = scanner.End() - (scanner.Missing().empty() ? 1 : 0);
			holds = IsUnderstood({opening.End(), static_cast<std::size_t>(end - opening.End())});
		}
		else if (EqualsIgnoringCase(opening.text, "selector("))
		{
			const Selector* const list = SelectorParser(tokens, _options.arena).ParseList(TokenType::closeRound);
			holds = list && !list->next;
		}
		else if (EqualsIgnoringCase(opening.text, "at-rule("))
			holds = tokens.Current().type == TokenType::atKeyword && IsKnownAtRule(tokens.Current().Name());
		else
			return false;
		truth = holds ? Truth::yes : Truth::no;
		return true;
	}

private:
	bool IsUnderstood(std::string_view text)
	{
		// A declaration, and nothing else: not even the semicolon that would part it from the next.
		Tokenizer tokens(text);
		for (ValueScanner scanner; tokens.Current().type != TokenType::end; scanner.TakeComponent(tokens))
		{
			if (tokens.Current().type == TokenType::semicolon)
				return false;
		}
		std::pmr::vector<Declaration> declarations(_options.arena.upstream_resource());
		ReadDeclarations(text, {.arena = _options.arena}, declarations);
		return declarations.size() == 1 &&
			   (declarations[0].isCustom || (_features && _features->Understands(declarations[0])));
	}

	const ReadOptions& _options;
	FeatureTest* const _features;
};
} // namespace

bool ReadSupportsCondition(Tokenizer& tokens, const ReadOptions& options, FeatureTest* features)
{
	tokens.SkipWhitespace();
	SupportsTest test(options, features);
	Truth truth = Truth::no;
	return ReadCondition(tokens, test, truth) && truth == Truth::yes;
}

bool IsKnownAtRule(std::string_view name)
{
	constexpr std::string_view kNames[]{"charset", "layer", "media", "namespace", "supports"};
	return std::any_of(std::begin(kNames), std::end(kNames),
					   [name](std::string_view known) { return EqualsIgnoringCase(known, name); });
}
} // namespace orvan::css
