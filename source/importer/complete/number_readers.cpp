// SPDX-License-Identifier: MIT
/// Readers of numbers, lengths and lists of them.
#include "importer/complete/collectors.h"
#include "importer/complete/value_readers.h"

namespace orvan::svg::complete
{

using grammar::Parsed;
using grammar::complete::Range;
using Number = SVGImportAttribute;

namespace
{

template <typename T>
Result<Reading> Store(const Application& application, Parsed parsed, T value) noexcept
{
	if (parsed == Parsed::refused)
		return Reading::refused;
	if (parsed == Parsed::value)
		ORVAN_TRY(application.element.Store(application.rule.number, std::move(value)));
	return Reading::applied;
}

Result<Reading> StoreLength(const Application& application, Range range) noexcept
{
	grammar::Length length;
	const Parsed parsed = grammar::complete::ParseLength(application.text, application.source, range, length);
	return Store(application, parsed, ToLength(length));
}

/// A side or a radius that is below zero draws nothing, on the elements that get it from an attribute alone; elsewhere
/// the value is no good, as for any property.
Range GetRangeOfSize(const Application& application) noexcept
{
	using Kind = SVGImportElementKind;
	constexpr TagSet kByAttribute = TagSet{Kind::svg, Kind::use, Kind::mask, Kind::marker, Kind::radialGradient} |
									TagSet::Range(Kind::filter, Kind::feTurbulence);
	const bool isOutermost = application.element.Parent() == nullptr;
	const bool isAny =
		application.source == grammar::Source::attribute && !isOutermost && kByAttribute.Has(application.tag);
	return isAny ? Range::any : Range::notNegative;
}

/// "auto" says nothing, and takes away what was said before.
Result<Reading> StoreLengthOrAuto(const Application& application, Range range) noexcept
{
	grammar::Length length;
	const Parsed parsed = grammar::complete::ParseLengthOrAuto(application.text, application.source, range, length);
	if (parsed == Parsed::nothing)
		ORVAN_TRY(application.element.Unset(application.rule.number));
	return Store(application, parsed, ToLength(length));
}

/// A list with a fault is none; the fault is told at its place.
Parsed OutcomeOf(const Application& application, const grammar::complete::Progress& progress) noexcept
{
	return ReadingOf(application, progress) == Reading::applied ? Parsed::value : Parsed::refused;
}

bool IsText(Tag tag) noexcept
{
	return tag == TagOf(SVGImportElementKind::text) || tag == TagOf(SVGImportElementKind::tspan) || tag == Tag::tref;
}

/// On text a list, whose first value stands where a single one would.
Result<Reading> StorePosition(const Application& application, SVGImportAttribute list)
{
	if (!IsText(application.tag))
		return StoreLength(application, Range::any);
	LengthCollector collector;
	const grammar::complete::Progress progress = grammar::complete::ParseLengthList(application.text, collector);
	ORVAN_TRY(std::move(collector.result));
	if (OutcomeOf(application, progress) == Parsed::refused)
		return Reading::refused;
	if (!collector.items.IsEmpty())
		ORVAN_TRY(application.element.Store(application.rule.number, collector.items[0]));
	if (collector.items.GetCount() > 1)
		ORVAN_TRY(application.element.Store(list, std::move(collector.items)));
	return Reading::applied;
}

} // namespace

Result<Reading> ReadNumber(const Application& application)
{
	double number = 0.0;
	const Parsed parsed = grammar::complete::ParseNumber(application.text, application.source, Range::any, number);
	return Store(application, parsed, number);
}

Result<Reading> ReadNotNegativeNumber(const Application& application)
{
	double number = 0.0;
	const Parsed parsed =
		grammar::complete::ParseNumber(application.text, application.source, Range::notNegative, number);
	return Store(application, parsed, number);
}

Result<Reading> ReadNumbers(const Application& application)
{
	NumberCollector collector;
	const grammar::complete::Progress progress = grammar::complete::ParseNumberList(application.text, collector);
	ORVAN_TRY(std::move(collector.result));
	return Store(application, OutcomeOf(application, progress), std::move(collector.items));
}

Result<Reading> ReadNumberPair(const Application& application)
{
	double first = 0.0;
	double second = 0.0;
	if (grammar::complete::ParseNumberPair(application.text, first, second) != Parsed::value)
		return Reading::refused;
	BaseArray<Float> pair;
	ORVAN_TRY(pair.Append(first));
	ORVAN_TRY(pair.Append(second));
	return Store(application, Parsed::value, std::move(pair));
}

Result<Reading> ReadAlpha(const Application& application)
{
	double alpha = 0.0;
	const Parsed parsed = grammar::complete::ParseAlpha(application.text, application.source, alpha);
	return Store(application, parsed, alpha);
}

Result<Reading> ReadOffset(const Application& application)
{
	double offset = 0.0;
	const Parsed parsed = grammar::complete::ParseOffset(application.text, offset);
	return Store(application, parsed, offset);
}

Result<Reading> ReadLength(const Application& application)
{
	return StoreLength(application, Range::any);
}

Result<Reading> ReadNotNegativeLength(const Application& application)
{
	return StoreLength(application, GetRangeOfSize(application));
}

/// In a sheet, sizes are those of any box and need a unit, which the other geometry properties do not.
Result<Reading> ReadSize(const Application& application)
{
	grammar::Length length;
	if (application.source == grammar::Source::sheet &&
		grammar::complete::ParseLength(application.text, application.source, Range::any, length) == Parsed::value &&
		length.unit == grammar::LengthUnit::number && length.value != 0.0)
		return Reading::refused;
	return StoreLengthOrAuto(application, GetRangeOfSize(application));
}

Result<Reading> ReadRadius(const Application& application)
{
	return StoreLengthOrAuto(application, Range::notNegative);
}

Result<Reading> ReadX(const Application& application)
{
	return StorePosition(application, Number::xList);
}

Result<Reading> ReadY(const Application& application)
{
	return StorePosition(application, Number::yList);
}

Result<Reading> ReadShift(const Application& application)
{
	if (!IsText(application.tag))
		return ReadNumber(application);
	LengthCollector collector;
	const grammar::complete::Progress progress = grammar::complete::ParseLengthList(application.text, collector);
	ORVAN_TRY(std::move(collector.result));
	return Store(application, OutcomeOf(application, progress), std::move(collector.items));
}

Result<Reading> ReadSpacing(const Application& application)
{
	grammar::Length length;
	const Parsed parsed = grammar::complete::ParseSpacing(application.text, application.source, length);
	return Store(application, parsed, ToLength(length));
}

Result<Reading> ReadReferencePoint(const Application& application)
{
	static constexpr grammar::complete::Keyword kSides[] = {
		{"left", 0}, {"top", 0}, {"center", 50}, {"right", 100}, {"bottom", 100}};
	std::int32_t percent = 0;
	if (grammar::complete::ParseKeyword(application.text, kSides, percent) == Parsed::value)
		return Store(application, Parsed::value, SVGLength{percent / 100.0, SVGLengthUnit::percent});
	return StoreLength(application, Range::any);
}

Result<Reading> ReadDashArray(const Application& application)
{
	LengthCollector collector;
	const Parsed parsed = grammar::complete::ParseDashArray(application.text, application.source, collector);
	ORVAN_TRY(std::move(collector.result));
	return Store(application, parsed, std::move(collector.items));
}

Result<Reading> ReadOrient(const Application& application)
{
	grammar::complete::Orient orient;
	const Parsed parsed = grammar::complete::ParseOrient(application.text, orient);
	return Store(application, parsed, SVGOrient{static_cast<SVGOrientType>(orient.kind), orient.degrees});
}

Result<Reading> ReadBaselineShift(const Application& application)
{
	grammar::complete::BaselineShift shift;
	const Parsed parsed = grammar::complete::ParseBaselineShift(application.text, application.source, shift);
	return Store(application, parsed,
				 SVGBaselineShift{static_cast<SVGBaselineShiftType>(shift.kind), ToLength(shift.length)});
}

} // namespace orvan::svg::complete
