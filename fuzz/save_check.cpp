// SPDX-License-Identifier: MIT
#include "save_check.h"

#include "attribute_values.h"
#include "require.h"
#include "svg_attribute_companions.h"
#include "svg_complete.h"
#include "svg_edit.h"

#include "orvan/host/diagnostic_sink.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

namespace orvan::fuzz
{
namespace
{
/// All that a value says, in numbers that are exact.
class Values
{
public:
	explicit Values(std::string& text) : _text(text)
	{
	}

	void Add(std::string_view text)
	{
		_text.append(text) += ';';
	}

	void Add(Float number)
	{
		char digits[40];
		std::snprintf(digits, sizeof digits, "%a", number + 0.0); // Zero has no sign.
		Add(std::string_view(digits));
	}

	void Add(std::int32_t number)
	{
		Add(std::string_view(std::to_string(number)));
	}

	void Add(const String& text)
	{
		Add(text.View());
	}

	/// Percentages are stored as fractions, of which not every one can be written: as near as there is one.
	void Add(const SVGLength& length)
	{
		Add(static_cast<std::int32_t>(length.unit));
		if (length.unit != SVGLengthUnit::percent)
			return Add(length.value);
		char digits[40];
		std::snprintf(digits, sizeof digits, "%.14g", length.value);
		Add(std::string_view(digits));
	}

	void Add(const Vector2d& vector)
	{
		Add(vector.x);
		Add(vector.y);
	}

	void Add(const Color& color)
	{
		Add(color.red);
		Add(color.green);
		Add(color.blue);
	}

	void Add(const SVGPaint& paint)
	{
		Add(static_cast<std::int32_t>(paint.type));
		Add(static_cast<std::int32_t>(paint.fallback));
		Add(paint.color);
		Add(paint.alpha);
		Add(paint.reference);
	}

	void Add(const SVGLength2d& lengths)
	{
		Add(lengths.x);
		Add(lengths.y);
	}

	void Add(const Matrix2d& matrix)
	{
		Add(matrix.offset);
		Add(matrix.axis1);
		Add(matrix.axis2);
	}

	void Add(const SVGOrient& orient)
	{
		Add(static_cast<std::int32_t>(orient.type));
		Add(orient.angle);
	}

	void Add(const SVGBaselineShift& shift)
	{
		Add(static_cast<std::int32_t>(shift.type));
		Add(shift.length);
	}

	void Add(const SVGViewbox& box)
	{
		Add(SVGLength2d{box.x, box.y});
		Add(SVGLength2d{box.width, box.height});
	}

	void Add(const SVGPreserveAspectRatio& ratio)
	{
		Add(static_cast<std::int32_t>(ratio.align));
		Add(static_cast<std::int32_t>(ratio.meetOrSlice));
	}

	void Add(const SVGFilterFunction& function)
	{
		Add(static_cast<std::int32_t>(function.type));
		Add(function.amount);
		Add(SVGLength2d{function.x, function.y});
		Add(function.deviation);
		Add(function.color);
		Add(function.reference);
	}

	void Add(const SVGPathCommand& command)
	{
		Add(static_cast<std::int32_t>(command.type));
		for (const Vector2d& point : command.points)
			Add(point);
	}

	void Add(const SVGClipShape& shape)
	{
		Add(static_cast<std::int32_t>(shape.type));
		Add(static_cast<std::int32_t>(shape.box));
		Add(static_cast<std::int32_t>(shape.fillRule));
		Add(shape.lengths);
		Add(shape.path);
	}

	template <typename T>
	void Add(const BaseArray<T>& values)
	{
		for (const T& value : values)
			Add(value);
		Add("]");
	}

private:
	std::string& _text;
};

std::vector<SVGElementRef> ListElements(const SVGElementRef& root)
{
	std::vector<SVGElementRef> elements{root};
	for (std::size_t i = 0; i < elements.size(); i++)
	{
		for (auto child = Cast<HierarchyObjectInterface>(elements[i])->GetFirstChild(); child;
			 child = child->GetNextSibling())
			elements.push_back(Cast<SVGElementInterface>(child));
	}
	return elements;
}

/// Whether an edit makes sense for an element that is not the root.
bool IsFor(EditKind kind, const SVGElementRef& element)
{
	const SVGImportElementKind type = element->GetElementType();
	const bool isRun = type == SVGImportElementKind::textRun;
	switch (kind)
	{
	case EditKind::path:
		return static_cast<bool>(Cast<SVGPathElementInterface>(element));
	case EditKind::width:
		return type == SVGImportElementKind::rect;
	case EditKind::transform:
		// Of gradients and patterns it is an attribute of another name.
		return !isRun && type != SVGImportElementKind::unknown && type != SVGImportElementKind::linearGradient &&
			   type != SVGImportElementKind::radialGradient && type != SVGImportElementKind::pattern;
	case EditKind::color:
		return !isRun && type != SVGImportElementKind::unknown;
	case EditKind::addition:
		return type == SVGImportElementKind::group;
	default:
		return !isRun;
	}
}
} // namespace

SVGDocumentRef OpenForEditing(std::string_view bytes, bool isComplete)
{
	const auto document = CreateObject<SVGDocumentInterface>(kSVGDocumentClass).GetValue();
	const auto import = Cast<SVGDocumentImportInterface>(document);
	SVGImportOptions options;
	options.isComplete = isComplete;
	options.isTolerant = true;
	options.keepsSource = true;
	Require(import->SetImportOptions(options).IsOk(), "options are taken");
	const ThreadDiagnosticSink ignored([](const Diagnostic&, void*) {}, nullptr);
	Require(import->InitFromMemory(bytes.data(), static_cast<std::int64_t>(bytes.size()), Url()).IsOk(),
			"bytes are loaded");
	return document;
}

bool EditDocument(const SVGDocumentRef& document, EditKind kind, std::uint64_t number)
{
	const SVGElementRef root = document->GetRootElement();
	std::vector<SVGElementRef> elements = ListElements(root);
	elements.erase(elements.begin());
	std::erase_if(elements, [kind](const SVGElementRef& element) { return !IsFor(kind, element); });
	if (elements.empty())
		return false;
	const SVGElementRef element = elements[number % elements.size()];
	const auto amount = static_cast<Float>(number % 1000);
	const auto source = Cast<SVGDocumentSourceInterface>(document);
	const auto text = [](std::string_view characters)
	{
		return String::Create(characters).GetValue();
	};
	const auto rect = [&]
	{
		const SVGElementRef made = CreateObject<SVGElementInterface>(kSVGRectElementClass).GetValue();
		Require(Cast<SVGSizeInterface>(made)->SetWidth({amount, SVGLengthUnit::mm}).IsOk(), "widths are set");
		return made;
	};
	const auto insert = [](const SVGElementRef& child, const SVGElementRef& parent)
	{
		return Cast<HierarchyObjectInterface>(child)->InsertAsLastChildOf(Cast<HierarchyObjectInterface>(parent), {});
	};
	switch (kind)
	{
	case EditKind::color:
		return element->SetFill({SVGPaintType::color, {amount / 999, 0.5, 0}, {}}).IsOk();
	case EditKind::transform:
		return element->SetLocalTransform(Matrix2d{{amount / 7, -amount}, {1 / (amount + 1), 0.25}, {0, 1}}).IsOk();
	case EditKind::path:
		return Cast<SVGPathElementInterface>(element)->LineTo({amount / 3, 1e-3}).IsOk();
	case EditKind::id:
		return element->SetId(text("new-" + std::to_string(number))).IsOk();
	case EditKind::attribute:
		return source->SetAttributeText(element, text("data-note"), text("<&\"'" + std::to_string(number))).IsOk();
	case EditKind::width:
		return Cast<SVGSizeInterface>(element)->SetWidth({amount / 11, SVGLengthUnit::percent}).IsOk();
	case EditKind::removal:
	{
		const auto edit = Cast<SVGElementEditInterface>(element);
		return edit && edit->Remove().IsOk();
	}
	case EditKind::move:
		return insert(element, root).IsOk();
	case EditKind::addition:
		return insert(rect(), element).IsOk();
	case EditKind::clearing:
	{
		const auto edit = Cast<SVGElementEditInterface>(element);
		const BaseArray<SVGImportAttribute> said = edit->GetAttributeNumbers().GetValue();
		if (said.IsEmpty())
			return false;
		// What a file says as one goes as one.
		return edit->RemoveAttribute(GetAttributeOf(said[number / 7 % said.GetCount()])).IsOk();
	}
	case EditKind::classes:
		return source->SetAttributeText(element, text("class"), text(number % 2 == 0 ? "other" : "ColorScheme-Text"))
			.IsOk();
	case EditKind::count:
		break;
	}
	return false;
}

namespace
{
/// Blanks on both sides of an element that is gone are one when they are loaded again, and none at the ends of a text.
std::string WithSingleBlanks(const String& characters)
{
	std::string text;
	for (const char c : characters.View())
	{
		if (c != ' ' || !(text.empty() || text.back() == ' '))
			text += c;
	}
	while (text.ends_with(' '))
		text.pop_back();
	return text;
}

std::string WithoutBlanks(const String& characters)
{
	std::string text(characters.View());
	std::erase(text, ' ');
	return text;
}
} // namespace

bool MovesByPercentages(const SVGElementRef& root)
{
	return std::ranges::any_of(
		ListElements(root), [](const SVGElementRef& element)
		{ return element->GetAttributeDictionary().Has(static_cast<int>(SVGImportAttribute::transformPercentages)); });
}

std::string DescribeSaved(const SVGElementRef& element, bool hasTransforms)
{
	std::string text = element->GetClassId();
	Values values(text);
	values.Add(element->GetId());
	const DataDictionary attributes = element->GetAttributeDictionary();
	if (hasTransforms)
		values.Add(element->GetLocalTransform());
	for (const DataDictionary::Entry& entry : attributes)
	{
		if (entry.key == static_cast<std::int32_t>(SVGImportAttribute::transformPercentages))
			continue;
		values.Add(entry.key);
		program::VisitAttribute(attributes, entry, [&](const auto& value) { values.Add(value); });
	}
	if (const auto path = Cast<SVGPathElementInterface>(element))
	{
		const BaseArray<SVGPathCommand> commands = path->GetPath().GetValue();
		for (const SVGPathCommand& command : commands)
		{
			values.Add(static_cast<std::int32_t>(command.type));
			for (const Vector2d& point : command.points)
				values.Add(point);
		}
	}
	if (const auto use = Cast<SVGUseElementInterface>(element))
		values.Add(use->GetLink());
	if (const auto content = Cast<SVGTextElementInterface>(element))
		values.Add(std::string_view(WithSingleBlanks(content->GetText())));
	if (const auto description = Cast<SVGDescriptionInterface>(element))
		values.Add(description->GetText());
	text += "(\n";
	// What stands between two elements of a text may come in several runs where one is gone that parted them.
	for (auto child = Cast<HierarchyObjectInterface>(element)->GetFirstChild(); child; child = child->GetNextSibling())
	{
		if (const auto run = Cast<SVGTextRunInterface>(child))
			text += WithoutBlanks(run->GetText());
		else
			text += DescribeSaved(Cast<SVGElementInterface>(child), hasTransforms);
	}
	return text + ")\n";
}

std::string ShowDifference(std::string_view before, std::string_view after)
{
	const auto at = static_cast<std::size_t>(
		std::mismatch(before.begin(), before.end(), after.begin(), after.end()).first - before.begin());
	const std::size_t start = before.substr(0, at).rfind('\n') + 1;
	const auto line = [start](std::string_view text)
	{
		return std::string(text.substr(start, text.find('\n', start) - start));
	};
	return "\nbefore: " + line(before) + "\nafter:  " + line(after) + '\n';
}

std::string Save(const SVGDocumentRef& document, std::string* reason)
{
	const ThreadDiagnosticSink ignored([](const Diagnostic&, void*) {}, nullptr);
	const Result<BaseArray<char>> saved = Cast<SVGDocumentSourceInterface>(document)->SaveToMemory({});
	if (saved.IsOk())
		return {saved.GetValue().begin(), saved.GetValue().end()};
	if (reason != nullptr)
		*reason = saved.GetError().GetMessage().View();
	return {};
}

LineDifference CompareLines(std::string_view before, std::string_view after)
{
	const auto split = [](std::string_view text)
	{
		std::vector<std::string_view> lines;
		while (!text.empty())
		{
			const std::size_t end = std::min(text.find('\n'), text.size() - 1) + 1;
			lines.push_back(text.substr(0, end));
			text.remove_prefix(end);
		}
		return lines;
	};
	const std::vector<std::string_view> a = split(before);
	const std::vector<std::string_view> b = split(after);
	std::size_t first = 0;
	while (first < a.size() && first < b.size() && a[first] == b[first])
		first++;
	std::size_t last = 0;
	while (last < a.size() - first && last < b.size() - first && a[a.size() - 1 - last] == b[b.size() - 1 - last])
		last++;
	return {a.size() - first - last, b.size() - first - last};
}

bool IsSmall(EditKind kind, const LineDifference& difference)
{
	constexpr std::size_t kOpened = 3; // An empty element gets a start tag, a child and an end tag.
	switch (kind)
	{
	case EditKind::move:
		return true; // Here and there.
	case EditKind::removal:
		return difference.added <= 1;
	case EditKind::addition:
		return difference.removed <= 1 && difference.added <= kOpened;
	case EditKind::clearing:
		// The last one of those with lines of their own has the end of the tag in its line.
		return difference.removed <= 2 && difference.added <= 1;
	default:
		return difference.removed <= 1 && difference.added <= 1;
	}
}
} // namespace orvan::fuzz
