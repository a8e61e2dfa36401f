// SPDX-License-Identifier: MIT
/// Everything that the geometry module says about a picture, as lines of text; see corpus/README.md.
#pragma once

#include "geometry_module.h"
#include "svg_source.h"

#include <map>

namespace orvan
{

/// A number with nine digits; what is next to nothing is 0.
inline std::string Digits(double number)
{
	char text[32];
	std::snprintf(text, sizeof(text), "%.9g", std::abs(number) < 1e-9 ? 0.0 : number);
	return text;
}

template <typename... Numbers>
std::string Digits(double first, Numbers... rest)
{
	return Digits(first) + ' ' + Digits(rest...);
}

class CorpusAnswers
{
public:
	explicit CorpusAnswers(const std::string& text)
		: _document(Must(CreateObject<SVGDocumentInterface>(kSVGDocumentClass)))
	{
		SVGImportOptions options;
		options.isTolerant = options.isComplete = true;
		const auto import = Cast<SVGDocumentImportInterface>(_document);
		Must(import->SetImportOptions(options));
		Must(import->InitFromMemory(text.data(), static_cast<std::int64_t>(text.size()), {}));
		List(_document->GetRootElement(), "");
	}

	const SVGDocumentRef& GetDocument() const
	{
		return _document;
	}

	const std::vector<SVGElementRef>& GetElements() const
	{
		return _elements;
	}

	/// Everything.
	std::string AskAll(const SVGGeometryRef& geometry)
	{
		_text.clear();
		_geometry = geometry;
		_measured.clear();
		_grid.clear();
		const Vector2d size = Must(geometry->GetViewSize());
		Line("view " + Digits(size.x, size.y));
		for (std::size_t i = 0; i < _elements.size(); i++)
			Place(i);
		for (std::size_t i = 0; i < _elements.size(); i++)
			Outline(i);
		Grid("topmost", {}, 40);
		Grid("all", {.findsAll = true}, 40);
		Grid("near", {.tolerance = size.x / 50.0, .findsAll = true}, 24);
		Grid("painted", {.findsAll = true, .ignoresPointerEvents = true}, 40);
		Rectangles(size);
		Paths("kept", {}, SVGNormalizedClips::ignored);
		Paths("clipped", {}, SVGNormalizedClips::applied);
		SVGNormalizeOptions options;
		options.strokes = SVGNormalizedStrokes::outlined;
		Paths("outlined", options, SVGNormalizedClips::applied);
		options.flattening = 0.5;
		options.grid = 70.0;
		options.precision = 0.25;
		Paths("plotted", options, SVGNormalizedClips::ignored);
		Saved("document", {}, SVGNormalizedClips::kept);
		options = {};
		options.strokes = SVGNormalizedStrokes::outlined;
		Saved("areas", options, SVGNormalizedClips::applied);
		return std::move(_text);
	}

	/// What edits could spoil.
	std::string AskQuickly(const SVGGeometryRef& geometry)
	{
		_text.clear();
		_grid.clear();
		_geometry = geometry;
		for (const SVGElementRef& element : _elements)
		{
			std::string line = LabelOf(element);
			for (const SVGBoxKind kind : {SVGBoxKind::stroke, SVGBoxKind::visual})
			{
				const Result<SVGBox> box = geometry->GetBox(element, kind, SVGCoordinates::parent);
				line += ' ' + (box.IsOk() ? AskedPicture::Describe(box.GetValue()) : MessageOf(box));
			}
			Line(line);
		}
		Grid("all", {.findsAll = true}, 14);
		Paths("kept", {}, SVGNormalizedClips::ignored);
		return std::move(_text);
	}

private:
	void List(const SVGElementRef& element, const std::string& path)
	{
		const std::string id(element->GetId());
		_labels[element.GetObject()] = id.empty() ? path + '/' : id;
		_elements.push_back(element);
		int number = 0;
		for (auto child = Cast<HierarchyObjectInterface>(element)->GetFirstChild(); child;
			 child = child->GetNextSibling())
			List(Cast<SVGElementInterface>(child), path + '/' + std::to_string(number++));
	}

	std::string LabelOf(const SVGElementRef& element) const
	{
		const auto found = _labels.find(element.GetObject());
		return found != _labels.end() ? found->second : "?";
	}

	void Line(const std::string& line)
	{
		_text += line + '\n';
	}

	/// Boxes and transforms. What is the same in the next coordinates is "=".
	void Place(std::size_t number)
	{
		constexpr const char* kKinds[] = {" fill", " stroke", " visual"};
		std::string line = _labels[_elements[number].GetObject()];
		bool hasAny = false;
		for (int kind = 0; kind < 3; kind++)
		{
			line += kKinds[kind];
			std::string before;
			for (int in = 0; in < 4; in++)
			{
				const SVGBox box = Must(_geometry->GetBox(_elements[number], static_cast<SVGBoxKind>(kind),
														  static_cast<SVGCoordinates>(in)));
				const std::string text = box.isEmpty ? "empty" : Digits(box.x, box.y, box.width, box.height);
				hasAny = hasAny || !box.isEmpty;
				line += (in > 0 ? ", " : " ") + (text == before ? "=" : text);
				before = text;
			}
		}
		for (int in = 1; in < 4; in++)
		{
			const Result<Matrix2d> found = _geometry->GetTransform(_elements[number], static_cast<SVGCoordinates>(in));
			if (!found.IsOk())
				continue;
			const Matrix2d& matrix = found.GetValue();
			line += (in == 1 ? " to " : ", ") + Digits(matrix.axis1.x, matrix.axis1.y, matrix.axis2.x, matrix.axis2.y,
													   matrix.offset.x, matrix.offset.y);
			hasAny = true;
		}
		if (hasAny)
			Line(line);
	}

	/// Where in a command its points begin.
	static int FirstPoint(SVGPathCommandType type)
	{
		return type == SVGPathCommandType::cubic ? 0 : type == SVGPathCommandType::close ? 3 : 2;
	}

	/// Its commands as numbers that change with each of them, how far it reaches, and what it covers.
	static std::string Summary(const Result<SVGOutlineRef>& outline, std::size_t mostForArea = 40)
	{
		if (!outline.IsOk())
			return MessageOf(outline);
		const SVGOutlineRef& path = outline.GetValue();
		double sum = 0.0;
		double weight = 1.0;
		std::string commands;
		for (const SVGPathCommand& command : Must(path->GetPath()))
		{
			const auto type = static_cast<std::size_t>(command.type);
			commands += commands.size() < 24 ? "MLCZ"[type] : '\0';
			const int first = FirstPoint(command.type);
			for (int i = first; i < 3; i++, weight = std::fmod(weight + 0.7, 3.0) + 0.5)
				sum += weight * (command.points[i].x - 0.6 * command.points[i].y);
		}
		std::string name;
		std::size_t others = 0;
		for (const char c : commands)
			c == '\0' ? void(others++) : name.push_back(c);
		const SVGBox box = path->GetBounds({});
		std::string line = name + (others > 0 ? '+' + std::to_string(others) : "") + " [" +
						   Digits(box.x, box.y, box.width, box.height) + "] sum " + Digits(sum) + " length " +
						   Digits(Must(path->GetLength()));
		for (const SVGFillRule rule : {SVGFillRule::nonzero, SVGFillRule::evenodd})
		{
			if (commands.size() > mostForArea) // Putting areas together takes its time.
				break;
			const Result<Float> area = path->GetArea(rule);
			line += ' ' + (area.IsOk() ? Digits(area.GetValue()) : MessageOf(area));
		}
		return line;
	}

	static std::string Describe(const Result<SVGOutlinePlace>& place)
	{
		if (!place.IsOk())
			return MessageOf(place);
		const auto& [point, direction, length, distance] = place.GetValue();
		return Digits(point.x, point.y, direction.x, direction.y, length, distance);
	}

	/// The outline by itself.
	void Outline(std::size_t number)
	{
		const SVGElementRef& element = _elements[number];
		const Result<SVGOutlineRef> found = _geometry->GetOutline(element, SVGCoordinates::element);
		if (!found.IsOk())
			return;
		const std::string label = _labels[element.GetObject()];
		const SVGOutlineRef& outline = found.GetValue();
		const std::string summary = Summary(found);
		std::string line = label + " outline " + summary;
		std::string before;
		for (const SVGCoordinates in : {SVGCoordinates::parent, SVGCoordinates::document, SVGCoordinates::view})
		{
			const SVGBox box = Must(_geometry->GetOutline(element, in))->GetBounds({});
			const std::string text = Digits(box.x, box.y, box.width, box.height);
			line += " in " + (text == before ? "=" : text);
			before = text;
		}
		Line(line);
		const std::size_t count = Must(outline->GetPath()).GetCount();
		if (Cast<HierarchyObjectInterface>(element)->GetFirstChild() || count == 0 || count > 60)
			return;
		if (const auto [same, isNew] = _measured.try_emplace(summary, label); !isNew)
			return Line("  as " + same->second);
		const SVGBox box = outline->GetBounds({});
		const double size = std::max({box.width, box.height, 1.0});
		const double length = Must(outline->GetLength());
		for (const double share : {-0.1, 0.0, 0.21, 0.5, 0.83, 1.0})
			Line("  at " + Digits(share) + ": " + Describe(outline->GetPlace(share * length)));
		for (const Vector2d& place : {Vector2d{0.1, 0.2}, Vector2d{0.7, 0.4}, Vector2d{1.3, 1.1}, Vector2d{-0.5, 0.9}})
			Line("  near " +
				 Describe(outline->FindNearest({box.x + place.x * box.width, box.y + place.y * box.height})));
		std::string inside;
		for (int i = 0; i < 49; i++)
		{
			const Vector2d at{box.x + box.width * (i % 7 + 0.37) / 7.0, box.y + box.height * (i / 7 + 0.41) / 7.0};
			inside +=
				".ex#"[outline->Contains(at, SVGFillRule::nonzero) * 2 + outline->Contains(at, SVGFillRule::evenodd)];
			inside += i % 7 == 6 ? " " : "";
		}
		Line("  contains " + inside);
		Line("  turned " + Summary(outline->Transform({{3.0, 4.0}, {0.8, 0.6}, {-0.6, 0.8}})));
		Line("  flat " + Summary(outline->Flatten(size / 500.0)));
		constexpr SVGStroke kStrokes[] = {{.width = 0.1},
										  {.width = 0.3, .cap = SVGLineCap::round, .join = SVGLineJoin::round},
										  {.width = 0.2, .cap = SVGLineCap::square, .join = SVGLineJoin::bevel},
										  {.width = 0.2, .miterLimit = 1.2}};
		for (SVGStroke stroke : kStrokes)
		{
			stroke.width *= size;
			Line("  stroke " + Summary(outline->GetStroke(stroke, size / 1000.0)));
		}
		constexpr const char* kOperations[] = {"  union ", "  common ", "  without ", "  either "};
		for (int operation = 0; operation < 4; operation++)
		{
			Line(kOperations[operation] + Summary(outline->Combine(_other, static_cast<SVGOutlineOperation>(operation),
																   SVGFillRule::nonzero, SVGFillRule::evenodd, 0.0)));
		}
		_other = outline;
	}

	std::string Describe(const SVGHits& found) const
	{
		std::string text;
		for (const SVGHit& hit : found.hits)
		{
			text += text.empty() ? "" : ", ";
			for (std::int32_t use = 0; use < hit.useCount; use++)
				text += LabelOf(found.uses[static_cast<std::size_t>(hit.firstUse + use)]) + '>';
			text += LabelOf(hit.element) + ' ' + "fstb"[static_cast<int>(hit.part)];
		}
		return text;
	}

	/// What is at places all over the view, drawn with a letter for each answer.
	void Grid(const char* name, const SVGHitOptions& options, int columns)
	{
		constexpr std::string_view kLetters = ".abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
		const Vector2d size = Must(_geometry->GetViewSize());
		const double step = size.x / columns;
		std::map<std::string, std::size_t> legend{{"", 0}};
		std::vector<std::string> answers{""};
		std::string picture;
		for (int row = 0; row < std::min(size.y / step, 60.0); row++)
		{
			for (int column = 0; column < columns; column++)
			{
				const std::string found =
					Describe(Must(_geometry->FindAt({(column + 0.43) * step, (row + 0.57) * step}, options)));
				const auto [at, isNew] = legend.try_emplace(found, answers.size());
				if (isNew)
					answers.push_back(found);
				picture += at->second < kLetters.size() ? kLetters[at->second] : '~';
			}
			picture += '\n';
		}
		for (std::size_t i = 1; i < answers.size(); i++)
			picture += std::string("  ") + (i < kLetters.size() ? kLetters[i] : '~') + " = " + answers[i] + '\n';
		Line(std::string("hits ") + name + (picture == _grid ? " as before" : ""));
		_text += picture == _grid ? "" : picture;
		_grid = picture;
	}

	void Rectangles(const Vector2d& size)
	{
		constexpr SVGBox kRectangles[] = {
			{0, 0, 0.5, 0.5, false}, {0.3, 0.3, 0.4, 0.4, false}, {-1, -1, 3, 3, false}, {0.25, 0, 0.1, 1, false}};
		for (SVGBox box : kRectangles)
		{
			box = {box.x * size.x, box.y * size.y, box.width * size.x, box.height * size.y, false};
			for (const bool isInside : {false, true})
				Line(std::string(isInside ? "  inside " : "rectangle ") +
					 Describe(Must(_geometry->FindIn(box, isInside))));
		}
	}

	/// The columns, a path on a line.
	void Paths(const char* name, const SVGNormalizeOptions& options, SVGNormalizedClips clips)
	{
		const Result<SVGNormalizedPaths> made = _geometry->NormalizeWith(options, clips);
		if (!made.IsOk())
			return Line(std::string("paths ") + name + ' ' + MessageOf(made));
		const SVGNormalizedPaths& paths = made.GetValue();
		Line(std::string("paths ") + name + ' ' + Digits(paths.size.x, paths.size.y) + " unclipped " +
			 std::to_string(paths.unclippedCount));
		const auto paint = [](SVGNormalizedPaint kind, const Color& color, Float opacity)
		{
			return kind == SVGNormalizedPaint::none ? std::string(" -")
													: (kind == SVGNormalizedPaint::server ? " server(" : " (") +
														  Digits(color.red, color.green, color.blue, opacity) + ')';
		};
		for (std::size_t i = 0; i < paths.elements.GetCount(); i++)
		{
			std::string line = "  " + LabelOf(paths.elements[i]) +
							   paint(paths.fillKinds[i], paths.fills[i], paths.fillOpacities[i]) +
							   (paths.fillRules[i] == SVGFillRule::evenodd ? "e" : "") +
							   paint(paths.strokeKinds[i], paths.strokes[i], paths.strokeOpacities[i]);
			if (paths.strokeKinds[i] != SVGNormalizedPaint::none)
				line += ' ' + Digits(paths.strokeWidths[i]) + "?brs"[static_cast<int>(paths.strokeCaps[i])] +
						"?mrb"[static_cast<int>(paths.strokeJoins[i])] + Digits(paths.strokeMiterLimits[i]);
			BaseArray<SVGPathCommand> commands;
			auto point = static_cast<std::size_t>(paths.pointOffsets[i]);
			for (auto at = paths.commandOffsets[i]; at < paths.commandOffsets[i + 1]; at++)
			{
				SVGPathCommand command;
				command.type = static_cast<SVGPathCommandType>(paths.commands[static_cast<std::size_t>(at)]);
				const int first = FirstPoint(command.type);
				for (int k = first; k < 3; k++)
					command.points[k] = paths.points[point++];
				Must(commands.Append(command));
			}
			const auto outline = Must(CreateObject<SVGOutlineInterface>(kSVGOutlineClass));
			Must(outline->SetPath(commands));
			Line(line + ' ' + Summary(outline, 0));
		}
	}

	/// The text of a normalised document, with long values shortened to numbers that change with what is in them.
	void Saved(const char* name, const SVGNormalizeOptions& options, SVGNormalizedClips clips)
	{
		const Result<SVGDocumentRef> made = _geometry->NormalizeToDocument(options, clips);
		Line(name + std::string(made.IsOk() ? "" : ' ' + MessageOf(made)));
		if (!made.IsOk())
			return;
		const BaseArray<char> saved = Must(Cast<SVGDocumentSourceInterface>(made.GetValue())->SaveToMemory({}));
		const std::string text(saved.begin(), saved.end());
		for (std::size_t at = 0; at < text.size();)
		{
			const std::size_t quote = std::min(text.find('"', at), text.size());
			const std::size_t end = std::min(text.find('"', quote + 1), text.size());
			_text.append(text, at, quote - at);
			if (quote < text.size())
				_text += '"' + Shorten(text.substr(quote + 1, end - quote - 1)) + '"';
			at = end + 1;
		}
		_text += _text.ends_with('\n') ? "" : "\n";
	}

	static std::string Shorten(const std::string& value)
	{
		if (value.size() < 60)
			return value;
		double sum = 0.0;
		double weight = 1.0;
		std::size_t others = 0;
		const char* at = value.c_str();
		while (*at != '\0')
		{
			char* end = nullptr;
			const bool isNumber = (*at >= '0' && *at <= '9') || *at == '-' || *at == '.';
			const double number = isNumber ? std::strtod(at, &end) : 0.0;
			if (isNumber && end != at)
			{
				sum += weight * number;
				weight = std::fmod(weight + 0.7, 3.0) + 0.5;
				at = end;
				continue;
			}
			others = (others * 31 + static_cast<unsigned char>(*at++)) % 9973;
		}
		return value.substr(0, 30) + "... " + std::to_string(others) + " sum " + Digits(sum);
	}

	SVGDocumentRef _document;
	std::vector<SVGElementRef> _elements;
	std::map<const void*, std::string> _labels;
	SVGGeometryRef _geometry;
	std::map<std::string, std::string> _measured; ///< Outlines, and whose they were first.
	std::string _grid;                            ///< The one before.
	SVGOutlineRef _other;                         ///< That of the shape before.
	std::string _text;
};

} // namespace orvan
