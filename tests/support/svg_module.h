// SPDX-License-Identifier: MIT
/// The SVG module, loaded from its file as a host loads it, and documents made from texts.
#pragma once

#include "host/support.h"
#include "orvan/host/memory_files.h"
#include "orvan/host/module_loader.h"
#include "vector_icon.h"

#include <atomic>

namespace orvan
{

/// Collects what this thread's loads say about the files: "line:column tag#id message", with the parts that are known.
class CollectedFindings
{
public:
	std::vector<std::string> lines;

private:
	static void Take(const Diagnostic& diagnostic, void* context)
	{
		std::string line;
		if (const DocumentPosition* at = diagnostic.position)
		{
			line = std::to_string(at->line) + ':' + std::to_string(at->column) + ' ' + std::string(at->elementName);
			if (!at->elementId.empty())
				line += '#' + std::string(at->elementId);
			line += at->elementName.empty() ? "" : " ";
		}
		static_cast<CollectedFindings*>(context)->lines.push_back(line + std::string(diagnostic.text));
	}

	ThreadDiagnosticSink _sink{&Take, this};
};

/// Bytes that are a file for as long as this lives.
class TextFile
{
public:
	explicit TextFile(std::string_view text)
	{
		static std::atomic<int> number = 0;
		_name = "test-" + std::to_string(number++) + ".svg";
		Must(MemoryFiles::Publish(_name, text));
	}
	TextFile(const TextFile&) = delete;
	~TextFile()
	{
		MemoryFiles::Withdraw(_name);
	}

	Url GetUrl() const
	{
		return Must(Url::Create("memory:" + _name));
	}

private:
	std::string _name;
};

/// Loads the module for its tests and unloads it after them, which is refused while anything of it is left over.
class SvgModuleTest : public testing::Test
{
protected:
	using Kind = SVGImportElementKind;
	using Attribute = SVGImportAttribute;

	static void SetUpTestSuite()
	{
		module = Must(Module::Load(ORVAN_SVG_MODULE));
	}

	static void TearDownTestSuite()
	{
		EXPECT_EQ("no error", MessageOf(Module::Unload(module)));
	}

	/// A new object of the class `net.orvan.image.class.<name>`.
	template <typename I = SVGElementInterface>
	static Ref<I> Make(const std::string& name)
	{
		return Must(CreateObject<I>(("net.orvan.image.class." + name).c_str()));
	}

	static SVGDocumentRef MakeDocument()
	{
		return Make<SVGDocumentInterface>("svgdocument");
	}

	/// The document of a text that must load without a word.
	static SVGDocumentRef Load(std::string_view text)
	{
		const CollectedFindings findings;
		const SVGDocumentRef document = MakeDocument();
		Must(document->Init(TextFile(text).GetUrl()));
		EXPECT_EQ(std::vector<std::string>(), findings.lines) << text.substr(0, 200);
		return document;
	}

	/// What the import of a text that must be refused had to say.
	static std::string RefusalOf(std::string_view text)
	{
		const CollectedFindings findings;
		const SVGDocumentRef document = MakeDocument();
		Must(document->Init(TextFile(text).GetUrl()));
		EXPECT_EQ("svg(rect)", Outline(document->GetRootElement())) << text.substr(0, 200);
		EXPECT_TRUE(Must(document->GetElementsByIdWithPrefix({})).IsEmpty());
		EXPECT_EQ(1u, findings.lines.size()) << text.substr(0, 200);
		return findings.lines.empty() ? "nothing" : findings.lines.front();
	}

	static SVGElementRef Find(const SVGDocumentRef& document, std::string_view id)
	{
		return Must(document->GetElementById(Text(id)));
	}

	static void Insert(const SVGElementRef& child, const SVGElementRef& parent)
	{
		Must(Cast<HierarchyObjectInterface>(child)->InsertAsLastChildOf(Cast<HierarchyObjectInterface>(parent), {}));
	}

	/// The classes of a tree with their ids: "svg(g#a(path rect))".
	static std::string Outline(const SVGElementRef& element)
	{
		constexpr std::array kNames = {"element", "svg",  "g",    "use",    "defs", "symbol", "linear", "radial",
									   "stop",    "path", "rect", "circle", "line", "text",   "mask",   "clip"};
		std::string outline = kNames.at(static_cast<std::size_t>(element->GetElementType()));
		if (const String id = element->GetId(); !id.IsEmpty())
			outline += '#' + std::string(id);
		std::string children;
		for (auto child = Cast<HierarchyObjectInterface>(element)->GetFirstChild(); child;
			 child = child->GetNextSibling())
			children += (children.empty() ? "" : " ") + Outline(Cast<SVGElementInterface>(child));
		return children.empty() ? outline : outline + '(' + children + ')';
	}

	static std::string OutlineOf(std::string_view text)
	{
		return Outline(Load(text)->GetRootElement());
	}

	static inline Module* module = nullptr;
};

inline void PrintTo(const SVGLength& length, std::ostream* out)
{
	*out << length.value << " unit " << static_cast<int>(length.unit);
}

inline bool operator==(const SVGLength& a, const SVGLength& b)
{
	return a.value == b.value && a.unit == b.unit;
}

inline bool operator==(const SVGLength2d& a, const SVGLength2d& b)
{
	return a.x == b.x && a.y == b.y;
}

inline void PrintTo(const Vector2d& v, std::ostream* out)
{
	*out << '(' << v.x << ", " << v.y << ')';
}

} // namespace orvan
