// SPDX-License-Identifier: MIT
#pragma once

#include "style_sheet.h"
#include "tokenizer.h"

#include <memory_resource>
#include <vector>

namespace orvan::css
{
/// Reads the rules of one text into a sheet.
class SheetReader
{
public:
	SheetReader(std::string_view text, std::size_t start, const StyleSheet::TextOptions& options, Arena& arena,
				std::pmr::vector<Rule>& rules, std::pmr::vector<Declaration>& declarations)
		: _tokens(text, start), _options{arena, options.source, options.report}, _layer(options.layer), _rules(rules),
		  _declarations(declarations)
	{
	}

	void Read()
	{
		ReadRules(0);
	}

private:
	void ReadRules(int mediaNesting);
	void ReadAtRule(int mediaNesting);
	void ReadQualifiedRule(int mediaNesting);
	void SkipQualifiedRule(int mediaNesting);
	const Selector* ReadSelectors(std::string_view& error, std::size_t& errorOffset);
	void Append(const Selector* list, std::uint32_t firstDeclaration, std::size_t offset);
	void Report(std::size_t offset, std::string_view message) const;

	Tokenizer _tokens;
	const ReadOptions _options;
	const std::int32_t _layer;
	std::pmr::vector<Rule>& _rules;
	std::pmr::vector<Declaration>& _declarations;
	bool _isFull = false;
};
} // namespace orvan::css
