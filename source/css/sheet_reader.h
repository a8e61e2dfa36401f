// SPDX-License-Identifier: MIT
#pragma once

#include "bounds.h"
#include "declaration_reader.h"
#include "namespaces.h"
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
				std::pmr::vector<Rule>& rules, std::pmr::vector<Declaration>& declarations, Layers& layers)
		: _tokens(text, start), _options{arena, options.source, options.report}, _features(options.features),
		  _rules(rules), _declarations(declarations), _layers(layers), _namespaces(&arena),
		  _declarationReader(_tokens, _options, kMaxDeclarations, declarations)
	{
	}

	void Read()
	{
		ReadRules({});
	}

private:
	/// Where a rule stands.
	struct Place
	{
		int nesting = 0; ///< Blocks that are open around it.
		LayerNumber layer = 0;
		const Selector* parents = nullptr; ///< The selectors of the rule around it, if any.
	};

	void ReadRules(const Place& place);
	void ReadBlock(const Place& place, std::size_t offset);
	void ReadContent(const Place& place, std::size_t offset);
	void ReadAtRule(const Place& place);
	bool ReadLayers(const Place& place, Place& inner);
	bool ReadLayerName(Tokenizer& tokens, LayerNumber& layer, bool enters);
	void ReadNamespace();
	bool ReadQualifiedRule(const Place& place);
	bool SkipQualifiedRule(const Place& place);
	const Selector* ReadSelectors(const Place& place, std::string_view& error, std::size_t& errorOffset);
	void Append(const Place& place, std::size_t firstDeclaration, std::size_t offset);
	void Report(std::size_t offset, std::string_view message) const;

	Tokenizer _tokens;
	const ReadOptions _options;
	FeatureTest* const _features;
	std::pmr::vector<Rule>& _rules;
	std::pmr::vector<Declaration>& _declarations;
	Layers& _layers;
	Namespaces _namespaces;
	DeclarationReader _declarationReader;
	bool _isFull = false;
	bool _hasRules = false; ///< Behind a rule, namespaces are declared no more.
};
} // namespace orvan::css
