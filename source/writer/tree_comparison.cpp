// SPDX-License-Identifier: MIT
#include "writer/tree_comparison.h"

#include "elements/complete_classes.h"
#include "writer/xml_text.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace orvan::svg
{

using complete::Rule;
using complete::Tag;
using complete::TagOf;
using Kind = SVGImportElementKind;
using Number = SVGImportAttribute;

namespace
{

/// Whether two elements move by the same percentages, each of the viewport that it has, and are turned and scaled
/// alike.
bool MoveByTheSamePercentages(const ElementBase& saved, const ElementBase& loaded) noexcept
{
	constexpr std::size_t kCount = 8;
	constexpr std::size_t kShares = 4; // Of the width and the height; then their size, and where that came to.
	const auto* a = saved.Find<BaseArray<Float>>(Number::transformPercentages);
	const auto* b = loaded.Find<BaseArray<Float>>(Number::transformPercentages);
	if (a == nullptr || b == nullptr || a->GetCount() != kCount || b->GetCount() != kCount ||
		!std::equal(a->begin(), a->begin() + kShares, b->begin()))
		return false;
	const Matrix2d before = saved.GetLocalTransform();
	const Matrix2d after = loaded.GetLocalTransform();
	if (before.offset != Vector2d{(*a)[6], (*a)[7]})
		return false; // It was replaced since.
	const double width = (*b)[4] - (*a)[4];
	const double height = (*b)[5] - (*a)[5];
	const Vector2d expected =
		before.offset + Vector2d{(*a)[0] * width + (*a)[2] * height, (*a)[1] * width + (*a)[3] * height};
	const auto isNear = [](double x, double y)
	{
		return std::abs(x - y) <= 1e-9 * (std::abs(x) + std::abs(y));
	};
	return before.axis1 == after.axis1 && before.axis2 == after.axis2 && isNear(expected.x, after.offset.x) &&
		   isNear(expected.y, after.offset.y);
}

class Comparison
{
public:
	Comparison(const WriteRequest& saved, ForcedProperties& forced) noexcept
		: _source(saved.source), _attributes(saved.attributes), _forced(forced),
		  _hasForeign(_source != nullptr && saved.options.mode == SVGSaveMode::edit)
	{
		if (_source != nullptr)
			_finder.emplace(*_source);
	}

	bool HasForced() const noexcept
	{
		return _hasForced;
	}

	void Compare(const ElementBase& saved, const ElementBase& loaded)
	{
		if (ClassKindOf(saved) != ClassKindOf(loaded))
			Fail(saved, "is of another kind");
		if (saved.GetId() != loaded.GetId())
			Fail(saved, "has another id");
		CompareAttributes(saved, loaded);
		const bool isText = ClassKindOf(saved) == Kind::text;
		const bool hasParts = isText && saved.FirstChild() != nullptr && loaded.FirstChild() != nullptr;
		const bool isAlike = hasParts                          ? SaysTheSame(saved, loaded)
							 : ClassKindOf(saved) != Kind::use ? CharactersOf(saved) == CharactersOf(loaded)
															   : true;
		if (!isAlike)
			Fail(saved, "has other text: blanks that count need xml:space=\"preserve\"");
		if (isText && !hasParts)
			return; // A text of its own is loaded as a run.
		const HierarchyObject* a = saved.FirstChild();
		const HierarchyObject* b = loaded.FirstChild();
		while (true)
		{
			if (TakeRuns(a) != TakeRuns(b))
				Fail(saved, "has other text in its parts");
			if (a == nullptr || b == nullptr)
				break;
			Compare(*AsElement(const_cast<HierarchyObject*>(a)), *AsElement(const_cast<HierarchyObject*>(b)));
			a = a->NextSibling();
			b = b->NextSibling();
		}
		if (a != nullptr || b != nullptr)
			Fail(saved, "has other children");
	}

private:
	[[noreturn]] static void Fail(const ElementBase& element, std::string_view what)
	{
		const String id = element.GetId();
		throw SaveError("The saved file would not load as it is: <" +
						std::string(complete::TagName(TagOf(ClassKindOf(element)))) +
						(id.IsEmpty() ? "" : " id=\"" + std::string(id.View()) + '"') + "> " + std::string(what) + '.');
	}

	static std::string CharactersOf(const ElementBase& element)
	{
		if (ClassKindOf(element) != Kind::text)
			return std::string(OwnTextOf(element).View());
		return std::string(static_cast<const TextElement&>(element).GetText().View());
	}

	/// The characters of the runs in an element. Where one ends and another begins with a blank, one blank is meant:
	/// that is what is left of two that stood around something which is gone.
	static void AppendRuns(std::string& text, const ElementBase& element, bool joinsBlanks)
	{
		for (HierarchyObject* at = element.FirstChild(); at != nullptr; at = at->NextSibling())
		{
			const ElementBase* const child = AsElement(at);
			if (child == nullptr)
				continue;
			if (ClassKindOf(*child) != Kind::textRun)
			{
				AppendRuns(text, *child, joinsBlanks);
				continue;
			}
			const String own = OwnTextOf(*child);
			std::string_view characters = own.View();
			if (joinsBlanks && characters.starts_with(' ') && (text.empty() || text.back() == ' '))
				characters.remove_prefix(1);
			text += characters;
		}
		if (joinsBlanks && ClassKindOf(element) == Kind::text && text.ends_with(' '))
			text.pop_back();
	}

	/// Whether two texts have the same characters, or the same but for blanks that meet.
	static bool SaysTheSame(const ElementBase& saved, const ElementBase& loaded)
	{
		for (const bool joinsBlanks : {false, true})
		{
			std::string a;
			std::string b;
			AppendRuns(a, saved, joinsBlanks);
			AppendRuns(b, loaded, joinsBlanks);
			if (a == b)
				return true;
		}
		return false;
	}

	/// The characters of runs that stand side by side, without blanks; `at` goes on to what is behind them.
	std::string TakeRuns(const HierarchyObject*& at) const
	{
		std::string characters;
		for (at = SkipUnwritten(at); at != nullptr; at = SkipUnwritten(at->NextSibling()))
		{
			const ElementBase* const element = AsElement(const_cast<HierarchyObject*>(at));
			if (element == nullptr || ClassKindOf(*element) != Kind::textRun)
				break;
			const String own = OwnTextOf(*element);
			std::ranges::copy_if(own.View(), std::back_inserter(characters), [](char c) { return c != ' '; });
		}
		return characters;
	}

	/// A run without characters is not written.
	const HierarchyObject* SkipUnwritten(const HierarchyObject* at) const noexcept
	{
		while (at != nullptr)
		{
			const ElementBase* const element = AsElement(const_cast<HierarchyObject*>(at));
			const Kind kind = element != nullptr ? ClassKindOf(*element) : Kind::group;
			const bool isEmptyRun = kind == Kind::textRun && OwnTextOf(*element).IsEmpty();
			if (!isEmptyRun && (_hasForeign || kind != Kind::unknown))
				return at;
			at = at->NextSibling();
		}
		return nullptr;
	}

	void CompareAttributes(const ElementBase& saved, const ElementBase& loaded)
	{
		const std::uint32_t record = _finder ? _finder->Find(saved) : kNoRecord;
		const Tag name = TagOfElement(saved, _source, record == kNoRecord ? nullptr : &_source->elements[record]);
		for (const Rule* rule : ListDifferences(saved, loaded, name))
		{
			std::string wanted;
			std::string found;
			const Formatted isWanted = Format(wanted, saved, _attributes.Of(saved), *rule, name);
			const Formatted isFound = Format(found, loaded, loaded.Attributes(), *rule, name);
			if (isWanted == isFound && wanted == found)
				continue;
			// What does not count says nothing, and the blanks of a new text are kept by what it does not say itself.
			const bool keepsBlanks = ClassKindOf(saved) == Kind::text && rule->number == Number::whiteSpace &&
									 isWanted == Formatted::absent && found == "pre";
			if (!rule->tags.Has(name) || keepsBlanks)
				continue;
			if (rule->number == Number::transform && MoveByTheSamePercentages(saved, loaded))
				continue;
			Force(saved, *rule);
		}
	}

	/// The rules of what is not the very same on both. Nearly all of most files is, and texts need not be made of it.
	std::vector<const Rule*> ListDifferences(const ElementBase& saved, const ElementBase& loaded, Tag name) const
	{
		std::vector<const Rule*> rules;
		const auto add = [&rules](const Rule* rule)
		{
			if (rule == nullptr)
				throw SaveError("An attribute that has no name cannot be written.");
			if (std::find(rules.begin(), rules.end(), rule) == rules.end())
				rules.push_back(rule);
		};
		const auto addDifferent = [&](const DataDictionary& values, const DataDictionary& others)
		{
			for (const DataDictionary::Entry& entry : values)
			{
				if (!HasSame(others, values, entry))
					add(FindWritingRule(WrittenAs(static_cast<Number>(entry.key))));
			}
		};
		addDifferent(_attributes.Of(saved), loaded.Attributes());
		addDifferent(loaded.Attributes(), _attributes.Of(saved));
		if (saved.GetLocalTransform() != loaded.GetLocalTransform())
			add(complete::FindRule("transform"));
		if (HashPath(saved) != HashPath(loaded))
			add(complete::FindRule(name == Tag::polygon || name == Tag::polyline ? "points" : "d"));
		if (ClassKindOf(saved) == Kind::use)
			add(complete::FindRule("href"));
		return rules;
	}

	static Formatted Format(std::string& text, const ElementBase& element, const DataDictionary& attributes,
							const Rule& rule, Tag name)
	{
		// The path counts, not the form that it is written in.
		const bool isPath = rule.number == Number::points;
		const Formatted formatted = FormatAttribute(text, element, attributes, isPath ? *complete::FindRule("d") : rule,
													isPath ? TagOf(Kind::path) : name, {});
		if (rule.number == Number::display && text == "inline")
		{
			text.clear();
			return Formatted::absent;
		}
		return formatted;
	}

	void Force(const ElementBase& element, const Rule& rule)
	{
		const std::string difference = "has another value of \"" + std::string(rule.name) + '"';
		if (complete::PropertyOf(rule) == nullptr)
			Fail(element, difference);
		std::vector<ForcedProperty>& properties = _forced[&element];
		const Number number = WrittenAs(rule.number);
		const auto known = std::find_if(properties.begin(), properties.end(),
										[number](const ForcedProperty& property) { return property.number == number; });
		if (known == properties.end())
			properties.push_back({number, false});
		else if (known->isImportant)
			Fail(element, difference);
		else
			known->isImportant = true;
		_hasForced = true;
	}

	const DocumentSource* _source;
	const SavedAttributes& _attributes;
	std::optional<RecordFinder> _finder;
	ForcedProperties& _forced;
	bool _hasForced = false;
	const bool _hasForeign; ///< What is none of SVG's was written, too.
};

} // namespace

bool FindCascadeDifferences(const WriteRequest& saved, const ElementBase& loaded, ForcedProperties& forced)
{
	Comparison comparison(saved, forced);
	comparison.Compare(saved.root, loaded);
	return comparison.HasForced();
}

} // namespace orvan::svg
