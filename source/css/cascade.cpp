// SPDX-License-Identifier: MIT
#include "cascade.h"

#include <algorithm>
#include <tuple>

namespace orvan::css
{
namespace
{
std::span<const Declaration> FindBlock(const StyleSheet& sheet, std::uint32_t rule)
{
	const Rule& found = sheet.Rules()[rule];
	return sheet.Declarations().subspan(found.firstDeclaration, found.declarationCount);
}

bool HasImportant(std::span<const Declaration> declarations)
{
	return std::any_of(declarations.begin(), declarations.end(),
					   [](const Declaration& declaration) { return declaration.isImportant; });
}
} // namespace

Cascade::Cascade(const StyleSheet& sheet, const ElementView& view, std::pmr::memory_resource* memory)
	: _sheet(sheet), _view(view), _matcher(view, memory), _index(sheet.Rules(), memory), _matched(memory),
	  _collected(memory)
{
}

std::span<const Declaration* const> Cascade::Collect(Element element, std::span<const Declaration> inlineStyle)
{
	_collected.clear();
	_matched.clear();
	if (!_sheet.IsEmpty() && !IsBudgetExceeded())
		FindRules(element);
	bool hasImportant = HasImportant(inlineStyle);
	for (const std::uint32_t rule : _matched)
	{
		const std::span<const Declaration> block = FindBlock(_sheet, rule);
		hasImportant = hasImportant || HasImportant(block);
		Append(block, false);
	}
	Append(inlineStyle, false);
	if (hasImportant)
	{
		SortImportant();
		for (const std::uint32_t rule : _matched)
			Append(FindBlock(_sheet, rule), true);
		Append(inlineStyle, true);
	}
	return _collected;
}

void Cascade::FindRules(Element element)
{
	_matcher.AddElement();
	const ElementNames names = _view.GetNames(element);
	_index.VisitCandidates(names,
						   [&](std::uint32_t rule)
						   {
							   const Rule& candidate = _sheet.Rules()[rule];
							   if (_matcher.Matches(*candidate.selector, element, names))
							   {
								   _matched.push_back(rule);
								   _matcher.Spend(candidate.declarationCount);
							   }
						   });
	if (IsBudgetExceeded())
		_matched.clear();
	else if (_matched.size() > 1)
		SortRules();
}

void Cascade::SortRules()
{
	const auto weigh = [this](std::uint32_t rule)
	{
		return std::tuple(_sheet.AllLayers().RankOf(_sheet.Rules()[rule].layer),
						  _sheet.Rules()[rule].selector->specificity, rule);
	};
	// Of the selectors of a list, the weightiest counts.
	const auto byBlock = [&](std::uint32_t left, std::uint32_t right)
	{
		const std::uint32_t leftBlock = _sheet.Rules()[left].firstDeclaration;
		const std::uint32_t rightBlock = _sheet.Rules()[right].firstDeclaration;
		return leftBlock != rightBlock ? leftBlock < rightBlock : weigh(left) > weigh(right);
	};
	const auto sharesBlock = [this](std::uint32_t left, std::uint32_t right)
	{
		return _sheet.Rules()[left].firstDeclaration == _sheet.Rules()[right].firstDeclaration;
	};
	std::sort(_matched.begin(), _matched.end(), byBlock);
	_matched.erase(std::unique(_matched.begin(), _matched.end(), sharesBlock), _matched.end());
	std::sort(_matched.begin(), _matched.end(),
			  [&](std::uint32_t left, std::uint32_t right) { return weigh(left) < weigh(right); });
}

/// Of what is important, the lowest layer wins.
void Cascade::SortImportant()
{
	const Layers& layers = _sheet.AllLayers();
	if (layers.IsEmpty())
		return;
	std::stable_sort(_matched.begin(), _matched.end(),
					 [&](std::uint32_t left, std::uint32_t right) {
						 return layers.RankOf(_sheet.Rules()[left].layer) > layers.RankOf(_sheet.Rules()[right].layer);
					 });
}

void Cascade::Append(std::span<const Declaration> declarations, bool isImportant)
{
	for (const Declaration& declaration : declarations)
	{
		if (declaration.isImportant == isImportant)
			_collected.push_back(&declaration);
	}
}
} // namespace orvan::css
