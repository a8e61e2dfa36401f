// SPDX-License-Identifier: MIT
/// The importer: the driver that has the XML read, and the builder of elements.
#include "import.h"

#include "importer/attributes/attribute_value.h"
#include "importer/complete/tree_builder.h"
#include "importer/new_child.h"
#include "importer/tags.h"
#include "importer/text/source_text.h"
#include "importer/xml/plain_xml.h"
#include "importer/xml/tree_tape.h"
#include "importer/xml/xml_tree.h"
#include "orvan/diagnostics.h"
#include "registration.h"
#include "writer/source_recorder.h"

#include <algorithm>
#include <exception>
#include <functional>
#include <new>
#include <optional>
#include <utility>

namespace orvan::svg
{
namespace
{

// Building -----------------------------------------------------------------------------------------------------------

/// Makes the elements of a tape. The recursion is as deep as the elements are nested, which all readers of XML bound.
class TreeBuilder
{
public:
	TreeBuilder(SVGParseContext& context, ElementTape& tape, SourceRecorder* recorder, bool hasReferences) noexcept
		: _context(context), _tape(tape), _at(tape.First()), _recorder(recorder), _values(hasReferences)
	{
	}

	/// Builds the root and everything below it.
	Result<SVGElementRef> Build()
	{
		SVGElementRef root = ORVAN_TRY(Create());
		ORVAN_TRY(Fill(root));
		return root;
	}

private:
	Result<SVGElementRef> Create() const noexcept
	{
		return kElementFactories[_at->Number()].Create<SVGElementInterface>();
	}

	/// Gives an element its attributes and all that is below it.
	Result<void> Fill(const SVGElementRef& element)
	{
		const SVGImportElementKind kind = _at->Kind();
		const std::string_view name = _at->Text();
		const SVGElementRef* const outerElement = std::exchange(_context.element, &element);
		_context.ownElement = static_cast<ElementBase*>(element.GetObject());
		_context.isPolygon = kind == SVGImportElementKind::path && name.ends_with("polygon");
		_context.elementName = name;
		if (_recorder != nullptr) [[unlikely]]
			_recorder->NoteElement(name.data(), element);
		ORVAN_TRY(SetAttributes());
		if (kind == SVGImportElementKind::text)
			ORVAN_TRY(SetText(element));
		else if (_at->Mark() == TapeMark::element)
			ORVAN_TRY(BuildChildren(*static_cast<HierarchyObject*>(element.GetObject())));
		_context.element = outerElement;
		return {};
	}

	/// Moves on from the element's start to what stands behind its attributes.
	Result<void> SetAttributes()
	{
		ORVAN_TRY(_context.staging.Lend(_context.ownElement->LoadedAttributes()));
		while ((_at = _tape.Next(_at))->Mark() == TapeMark::attribute)
		{
			_context.rawValue = _at->Text();
			const std::string_view text = ORVAN_TRY(_values.Decode(_context.rawValue));
			ORVAN_TRY(DispatchAttribute(_context, _at->Attribute(), text, grammar::Source::attribute));
		}
		if (!_context.refusal.IsOk()) [[unlikely]]
			return _context.refusal.GetError();
		return _context.staging.TakeBack(_context.ownElement->LoadedAttributes());
	}

	/// Moves on to the text element's end.
	Result<void> SetText(const SVGElementRef& element)
	{
		const std::string_view text =
			_at->Mark() == TapeMark::text ? ORVAN_TRY(_values.Decode(_at->Text())) : _at->Text();
		ORVAN_TRY(Borrowed<SVGTextElementInterface>(element)->SetText(ORVAN_TRY(String::Create(text))));
		for (int depth = 1; depth != 0;)
		{
			_at = _tape.Next(_at);
			depth += _at->Mark() == TapeMark::element ? 1 : _at->Mark() == TapeMark::end ? -1 : 0;
		}
		return {};
	}

	/// Moves on from the first child to the parent's end.
	Result<void> BuildChildren(HierarchyObject& parent)
	{
		for (; _at->Mark() == TapeMark::element; _at = _tape.Next(_at))
		{
			const NewChild child(ORVAN_TRY(Create()), parent);
			ORVAN_TRY(Fill(child.Get()));
		}
		return {};
	}

	SVGParseContext& _context;
	ElementTape& _tape;
	const TapeEntry* _at;
	SourceRecorder* _recorder; ///< Null unless the source is kept.
	ReferenceDecoder _values;
};

// Driving ------------------------------------------------------------------------------------------------------------

/// One import of one file.
class ImportDriver
{
public:
	ImportDriver(const SVGImportOptions& options, TextUse use) noexcept : _options(options), _use(use)
	{
		if (options.isComplete)
			_complete.emplace(options);
		if (options.isTolerant)
			_plain.findings = &_findings;
	}

	Result<ImportResult> Run(BaseArray<char> bytes)
	{
		if (_options.keepsSource)
			_kept = ORVAN_TRY(MakeDocumentSource());
		if (_options.isComplete)
			_source = ORVAN_TRY(ReadSourceText(std::move(bytes), _kept ? &_kept->file : nullptr));
		else
		{
			ORVAN_TRY(Pad(bytes));
			_source.text = std::move(bytes);
		}
		if (_kept)
			_recorder.emplace(*_kept, Text());
		return _options.isComplete ? BuildComplete() : BuildPlain();
	}

	/// Hands over the source, when it was kept. The import's own text goes with it.
	Result<DocumentSourcePointer> TakeSource() noexcept
	{
		if (_kept)
		{
			ORVAN_TRY(_recorder->Finish());
			_kept->text = std::move(_source);
			_kept->isComplete = _options.isComplete;
		}
		return std::move(_kept);
	}

	/// Takes down what an exception is about, which ends the import.
	Result<void> NoteRefusal(const std::exception& exception, DocumentPosition& position) noexcept
	{
		FindingPlace place;
		if (const auto* syntaxError = dynamic_cast<const xml::parse_error*>(&exception))
			place.where = syntaxError->where<char>();
		else if (const auto* xmlError = dynamic_cast<const XmlError*>(&exception))
			place.where = xmlError->GetWhere();
		else if (_complete)
			place = {_complete->refusedAt.where, _complete->refusedAt.elementTag, _complete->refusedElementId,
					 _complete->refusedAttribute};
		return NoteRefusal(place, exception.what(), position);
	}

	/// Whether what is to be told of the text can not be told any more.
	bool NeedsWholeText() const noexcept
	{
		return _plain.textRelease.HasReleased();
	}

	/// Whether the plain import has refused a value, which ended it.
	bool HasRefusedValue() const noexcept
	{
		return !_plain.refusal.IsOk();
	}

	/// Takes down what that value was, and tells it.
	Result<void> ReportRefusedValue() noexcept
	{
		const FindingPlace place{_plain.refusedAt, _plain.refusedElementName, _plain.refusedElementId,
								 _plain.refusedAttribute};
		// A text for people ends where a reference has put a zero.
		const char* const message = _plain.refusal.GetError().GetMessage().CString();
		DocumentPosition position;
		Result<void> noted = NoteRefusal(place, message, position);
		CriticalOutput(&position, "Exception parsing svg file. @", message);
		return noted;
	}

	/// Hands over what became of the import. `hasRoot` tells whether there is a tree.
	Result<void> MakeReport(SVGImportReport& report, bool hasRoot) noexcept
	{
		FindingList& findings = Findings();
		report.outcome = _isRefused                 ? SVGImportOutcome::refused
						 : !hasRoot                 ? SVGImportOutcome::noSvgElement
						 : findings.GetCount() == 0 ? SVGImportOutcome::loaded
													: SVGImportOutcome::loadedWithFindings;
		return findings.GetCount() == 0 ? Result<void>()
										: findings.MoveTo(report, Text(), _source.ForPlaces(), _source.positions);
	}

private:
	Result<void> NoteRefusal(const FindingPlace& place, const char* message, DocumentPosition& position) noexcept
	{
		position.elementName = place.elementTag;
		position.elementId = place.elementId;
		const std::string_view original = _source.ForPlaces();
		if (IsInside(place.where))
		{
			const std::size_t offset =
				_source.positions.ToOriginal(static_cast<std::size_t>(place.where - Text().data()));
			const std::string_view before = original.substr(0, offset);
			position.line = 1 + std::count(before.begin(), before.end(), '\n');
			// Without a line break before it, npos + 1 is 0: the column counts from the start of the text.
			position.column = static_cast<std::int64_t>(before.size() - (before.rfind('\n') + 1)) + 1;
		}
		_isRefused = true;
		return Findings().Add(SVGFindingLevel::critical, place, message);
	}

	FindingList& Findings() noexcept
	{
		return _complete ? _complete->Findings() : _findings;
	}

	std::string_view Text() const noexcept
	{
		const std::size_t count = _source.text.GetCount();
		return {_source.text.begin(), count == 0 ? 0 : count - 1};
	}

	bool IsInside(const char* where) const noexcept
	{
		return where != nullptr && !std::less<>()(where, Text().data()) &&
			   !std::less<>()(Text().data() + Text().size(), where);
	}

	Result<ImportResult> BuildPlain()
	{
		const bool hasReferences = GuardXml(Text(), XmlReferences::parsed);
		ElementTape tape;
		const bool isRead = !_recorder && ReadPlainXml(Text(), tape);
		if (!isRead && !ORVAN_TRY(ReadWithLibrary(tape)))
			return ImportResult();
		if (_use == TextUse::repeatable && !_recorder)
			_plain.textRelease = TextRelease({_source.text.begin(), Text().size()});
		SVGElementRef root = ORVAN_TRY(TreeBuilder(_plain, tape, Recorder(), hasReferences).Build());
		return ImportResult{std::move(root), std::move(_plain.elementsById), {}};
	}

	/// False when there is no root. Keeps the library's tree out of the way of those who need none.
	[[gnu::noinline]] Result<bool> ReadWithLibrary(ElementTape& tape)
	{
		tape.Clear();
		XmlTree tree(_source.text.begin());
		const XmlNode* const root = FindRoot(tree);
		if (root == nullptr)
			return false;
		if (_recorder)
			ORVAN_TRY(_recorder->Collect(*root));
		AppendTree(tree, *root, tape);
		return true;
	}

	Result<ImportResult> BuildComplete()
	{
		const bool hasReferences = GuardXml(Text(), XmlReferences::legal);
		XmlTree tree(_source.text.begin());
		for (const XmlNode* node = tree.FirstNode(); node != nullptr; node = node->next_sibling())
		{
			if (node->type() != xml::node_element || complete::TagOfNode(*node) != complete::TagOf(Kind::svg))
				continue;
			if (_recorder)
				ORVAN_TRY(_recorder->Collect(*node));
			complete::TreeBuilder builder(*_complete, tree, Recorder(), hasReferences);
			SVGElementRef root = ORVAN_TRY(builder.BuildDocument(*node, _options.styleSheet.View()));
			return ImportResult{std::move(root), _complete->TakeIds(), {}};
		}
		return ImportResult();
	}

	SourceRecorder* Recorder() noexcept
	{
		return _recorder ? &*_recorder : nullptr;
	}

	using Kind = SVGImportElementKind;

	const SVGImportOptions& _options;
	TextUse _use;
	SourceText _source;
	DocumentSourcePointer _kept;
	std::optional<SourceRecorder> _recorder;
	SVGParseContext _plain;
	FindingList _findings; ///< Of the plain import.
	std::optional<complete::Importer> _complete;
	bool _isRefused = false;
};

ImportResult AskForWholeText() noexcept
{
	ImportResult result;
	result.needsWholeText = true;
	return result;
}

Result<ImportResult> RunGuarded(ImportDriver& driver, BaseArray<char> bytes) noexcept
{
	try
	{
		Result<ImportResult> result = driver.Run(std::move(bytes));
		const bool isOutOfMemory = !result.IsOk() && result.GetError().GetClass() == ErrorClass::outOfMemory;
		if (isOutOfMemory || !driver.HasRefusedValue())
			return result;
		if (driver.NeedsWholeText())
			return AskForWholeText();
		ORVAN_TRY(driver.ReportRefusedValue());
		return ImportResult();
	}
	catch (const std::bad_alloc&)
	{
		return OutOfMemoryError();
	}
	catch (const std::exception& exception)
	{
		if (driver.NeedsWholeText())
			return AskForWholeText();
		DocumentPosition position;
		const Result<void> noted = driver.NoteRefusal(exception, position);
		CriticalOutput(&position, "Exception parsing svg file. @", exception.what());
		ORVAN_TRY(noted);
	}
	catch (...)
	{
		CriticalOutput(nullptr, "Exception parsing svg file. Exception @", "of an unknown type");
		DocumentPosition position;
		ORVAN_TRY(driver.NoteRefusal(XmlError("an exception of an unknown type", nullptr), position));
	}
	return ImportResult();
}

} // namespace

Result<void> FileText::MakeRoom(std::size_t count) noexcept
{
	ORVAN_TRY(bytes.Reserve(count + 1 + kTextPadding));
	if (TextRelease::IsNew({bytes.begin(), count + 1}))
		use = TextUse::repeatable;
	ORVAN_TRY(bytes.ResizeUninitialized(count + 1));
	bytes[count] = '\0';
	return {};
}

Result<ImportResult> Import(BaseArray<char> bytes, const SVGImportOptions& options, SVGImportReport& report,
							TextUse use) noexcept
{
	if (bytes.IsEmpty())
	{
		report.outcome = SVGImportOutcome::noSvgElement;
		return ImportResult();
	}
	ImportDriver driver(options, use);
	ImportResult result = ORVAN_TRY(RunGuarded(driver, std::move(bytes)));
	if (result.needsWholeText)
		return result;
	ORVAN_TRY(driver.MakeReport(report, static_cast<bool>(result.root)));
	if (result.root)
		result.source = ORVAN_TRY(driver.TakeSource());
	if (report.outcome == SVGImportOutcome::noSvgElement)
		WarningOutput("The file holds no svg element.");
	return result;
}

namespace
{

constexpr UseDeclaration kUses[] = {
	{"svg_importer_svgpp", "SVGElementInterface", "svg_elements"},
	{"svg_importer_svgpp", "HierarchyObjectInterface", "hierarchy"},
	{"svg_importer_svgpp", "CriticalOutput", "diagnostics"},
};

ORVAN_REGISTER(ORVAN_ORDER_IMPORTER, entries)
[] = {
	{Kind::unit, "svg_importer_svgpp"},
	kUses[0],
	kUses[1],
	kUses[2],
};

} // namespace
} // namespace orvan::svg
