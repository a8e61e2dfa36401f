// SPDX-License-Identifier: MIT
/// A renderer in one file: the outlines of paths and rectangles, as Encapsulated PostScript. It leaves out all else.
#include <orvan/module.h>
#include <svg_render_target.h>

#include <charconv>
#include <cstdio>

using namespace orvan;
ORVAN_DEFINE_MODULE();

class PostScriptContext : public ObjectBase
{
public:
	Result<void> Begin(const SVGDocumentRef& document, const SVGRenderOptions& options) noexcept
	{
		if (!document || !document->GetRootElement())
			return NullReferenceError("There is no document to draw.");
		_text.Clear();
		_size = {options.width > 0 ? options.width : 300, options.height > 0 ? options.height : 300};
		ORVAN_TRY(Put({}, "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 "));
		ORVAN_TRY(Put({_size.x, _size.y}, "\n"));
		return Put({0, _size.y}, "translate 1 -1 scale\n"); // SVG's y axis points down.
	}

	Result<void> Finish(const String& path) noexcept
	{
		std::FILE* const file = std::fopen(path.CString(), "wb");
		const bool isWritten = file && std::fwrite(_text.begin(), 1, _text.GetCount(), file) == _text.GetCount();
		if (!file || std::fclose(file) != 0 || !isWritten) // Closing writes what is still in the buffer.
			return IoError(ORVAN_TRY(Url::FromPath(path)), "The picture cannot be written.");
		return {};
	}
	// clang-format off
	Vector2d GetSize() const noexcept { return _size; }
	Result<SVGRenderPixels> GetPixels() noexcept { return IllegalStateError("PostScript has no pixels."); }
	Result<void> DrawSVG(const SVGSVGElementRef& element) noexcept { return DrawChildren(Cast<SVGElementInterface>(element)); }
	Result<void> DrawGroup(const SVGGroupElementRef& element) noexcept { return DrawChildren(Cast<SVGElementInterface>(element)); }
	Result<void> DrawUse(const SVGUseElementRef&) noexcept { return {}; }
	Result<void> DrawLine(const SVGLineElementRef&) noexcept { return {}; }
	Result<void> DrawCircle(const SVGCircleElementRef&) noexcept { return {}; }
	Result<void> DrawText(const SVGTextElementRef&) noexcept { return {}; }
	// clang-format on
	Result<void> DrawRectangle(const SVGRectElementRef& element) noexcept
	{
		const auto [x, y] = Cast<SVGPositionInterface>(element)->GetPosition();
		const auto [w, h] = Cast<SVGSizeInterface>(element)->GetSize();
		ORVAN_TRY(PutTransform(Cast<SVGElementInterface>(element)));
		return Put({x.value, y.value, w.value, h.value}, "rectstroke grestore\n");
	}

	Result<void> DrawPath(const SVGPathElementRef& element) noexcept
	{
		constexpr const char* kOperators[] = {"moveto\n", "lineto\n", "curveto\n", "pop pop closepath\n"};
		ORVAN_TRY(PutTransform(Cast<SVGElementInterface>(element)));
		for (const auto& [type, points] : ORVAN_TRY(element->GetPath()))
		{
			if (type == SVGPathCommandType::cubic)
				ORVAN_TRY(Put({points[0].x, points[0].y, points[1].x, points[1].y}, ""));
			ORVAN_TRY(Put({points[2].x, points[2].y}, kOperators[static_cast<int>(type)]));
		}
		return Put({}, "stroke grestore\n");
	}

private:
	Result<void> DrawChildren(const SVGElementRef& element) noexcept
	{
		ORVAN_TRY(PutTransform(element));
		ORVAN_TRY(DrawSVGChildren(SVGContextRef::From(this), element));
		return Put({}, "grestore\n");
	}

	Result<void> PutTransform(const SVGElementRef& element) noexcept
	{
		const auto [offset, axis1, axis2] = element->GetLocalTransform();
		return Put({axis1.x, axis1.y, axis2.x, axis2.y, offset.x, offset.y}, "6 array astore gsave concat\n");
	}

	/// Appends at most six numbers and what to do with them.
	Result<void> Put(std::initializer_list<Float> numbers, std::string_view operation) noexcept
	{
		char text[256], *at = text;
		for (const Float number : numbers)
			*(at = std::to_chars(at, std::end(text), number).ptr)++ = ' ';
		ORVAN_TRY(_text.AppendAll(text, static_cast<std::size_t>(at - text)));
		return _text.AppendAll(operation.data(), operation.size());
	}
	BaseArray<char> _text;
	Vector2d _size;
};

using Kind = RegistrationEntry::Kind;
constexpr FrameworkDeclaration kUsed = {"net.orvan.svg.framework", FrameworkDeclaration::Role::used, nullptr, 0};
// clang-format off
constexpr ClassDeclaration kContext =
	DeclareClass<PostScriptContext, Implements<SVGContextInterface, PostScriptContext>,
				 Implements<SVGRenderTargetInterface, PostScriptContext>>(kSVGContextClass);
const RegistrationEntry entries[] = {{Kind::unit, "postscript_renderer"},
	kInterfaceDeclaration<SVGRenderTargetInterface>, {Kind::module, "net.orvan.example.postscript"}, kUsed, kContext};
