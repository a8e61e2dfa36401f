// SPDX-License-Identifier: MIT
/// Editing a tree: taking away, moving, renaming, undoing, and hearing of what changed.
///
/// Every element implements `SVGElementEditInterface` beside `SVGElementInterface`; paths and uses have one more each,
/// documents and icons implement `SVGDocumentEditInterface`:
///
///     const auto edit = Cast<SVGDocumentEditInterface>(document);
///     ORVAN_TRY(edit->BeginTransaction());
///     ORVAN_TRY(Cast<SVGElementEditInterface>(layer)->RemoveAttribute(SVGImportAttribute::fill)); // Inherits again.
///     ORVAN_TRY(Cast<SVGElementEditInterface>(shadow)->Remove());
///     ORVAN_TRY(edit->CommitTransaction());
///     ORVAN_TRY(edit->Undo());
///
/// **What is recorded.** All that changes an element of the document's tree: the methods here, and the setters of all
/// other interfaces. Inside of a transaction every change is recorded, and can be taken back. After the first
/// transaction the document has a history: each transaction is a step of it, and so is every single change that is made
/// outside of one, until the history is cleared. Changes made after an undo drop what could have been redone. A
/// document that never had a transaction records nothing. Elements that were never in the tree belong to nobody: what
/// is set on them before they are inserted is not taken back. Insertions that elements of other modules make by
/// themselves are not recorded.
///
/// **When memory runs out** each call here fails with that error and changes nothing, and so does every setter. Taking
/// back, undo and redo allocate nothing and never fail for it. `RemoveAllChildren` and `SetText` of a text element have
/// no way to fail: inside of a transaction that cannot record it, `RemoveAllChildren` changes nothing, and the
/// transaction can only be rolled back; outside of one, it clears the history.
///
/// **Ids.** The document finds an element under the id that it was loaded with, as ever; `SetId` does not change that.
/// Elements that are taken out with `Remove`, or replaced, are no longer found. Elements that come into the tree by the
/// methods here are found under their id, unless another one is. `RenameId` changes id, table and references together.
///
/// **What was edited** is told by the content, not by counting calls: an undone edit is no edit.
///
/// Changing a tree must not overlap any other use of it, of its document or of elements that were taken out of it.
#pragma once

#include "svg_base.h"
#include "svg_import.h"

#include <bit>
#include <cstddef>
#include <cstdint>

namespace orvan
{

// Elements -----------------------------------------------------------------------------------------------------------

/// What every element offers to editors beyond `SVGElementInterface` and `HierarchyObjectInterface`.
class SVGElementEditInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svgelementedit";
	static constexpr const char* kName = "orvan.SVGElementEditInterface";
	static constexpr int kSlotCount = 11;

	/// The document in whose tree the element stands; null when it stands in none. For an icon's elements, the document
	/// that the icon owns.
	ORVAN_METHOD(1, SVGDocumentRef, GetDocument, ())
	/// Number of children, of whatever class.
	ORVAN_METHOD(2, std::int64_t, GetChildCount, ())
	/// The child at an index from 0; null when there is none, or when it is no SVG element. Takes time in proportion to
	/// the index: `GetFirstChild` and `GetNextSibling` walk better.
	ORVAN_METHOD(3, SVGElementRef, GetChildAt, (std::int64_t index), index)
	/// The element's index among the children of its parent, from 0; -1 for a root.
	ORVAN_METHOD(4, std::int64_t, GetIndex, ())

	/// Takes the element with all below out of its parent; does nothing when it has none. The ids below are no longer
	/// found. Whoever holds the element may insert it again. Illegal for the root of a document: see `SetRootElement`.
	ORVAN_METHOD(5, Result<void>, Remove, ())
	/// Makes `child` a child of this element, before `next`, or as the last when `next` is null, taking it out of where
	/// it was. Fails, and changes nothing, when `child` is null, when it is this element or contains it, when `next` is
	/// no child of this element, and when `child` is the root of a document. `next` may be `child`, which then stays.
	ORVAN_METHOD(6, Result<void>, InsertChildBefore, (const SVGElementRef& child, const SVGElementRef& next), child,
				 next)
	/// Takes the element out and puts another one, which may come from elsewhere in the tree, in its place. Fails as
	/// the two above, and when the element has no parent.
	ORVAN_METHOD(7, Result<void>, ReplaceWith, (const SVGElementRef& replacement), replacement)

	/// Takes an attribute away, so that a getter returns the initial value again and renderers inherit; does nothing
	/// when it is absent. Beside the numbers of the dictionary there are those that stand elsewhere: `id`, `transform`
	/// (back to the identity), `d` and `points` (no commands) and `href` of a use (no link).
	ORVAN_METHOD(8, Result<void>, RemoveAttribute, (SVGImportAttribute key), key)
	/// The numbers of all attributes that are set, ascending. Beside those of the dictionary: `id` when it is not
	/// empty, `transform` when it is not the identity, `d` when there are commands, `href` when a use has a link.
	ORVAN_METHOD(9, Result<BaseArray<SVGImportAttribute>>, GetAttributeNumbers, ())
	/// Makes an attribute what it is on another element, one of this module; absent there is removed here. Ids cannot
	/// be copied. What stands outside of the dictionary is copied between elements that both have it.
	ORVAN_METHOD(10, Result<void>, CopyAttribute, (const SVGElementRef& source, SVGImportAttribute key), source, key)
	/// Makes all attributes of the dictionary, and the transform, what they are on another element of this module.
	ORVAN_METHOD(11, Result<void>, CopyAttributes, (const SVGElementRef& source), source)
};
using SVGElementEditRef = Ref<SVGElementEditInterface>;

/// The commands of a path as the element keeps them: a range of `SVGPathCommand`, made one by one while it is walked.
///
///     for (const SVGPathCommand& command : Cast<SVGPathEditInterface>(path)->GetPathView()) …
///
/// Good until the path is next changed, or released. Owns nothing; copies are free.
class SVGPathView
{
public:
	/// Commands whose kinds share a word.
	static constexpr std::uint32_t kRun = 32;

	SVGPathView() noexcept = default;

	/// `words`: before each run of commands a word with their kinds, two bits each from the lowest on; behind it the
	/// coordinates that the commands use and no others, x and y of each point. Made by path elements.
	SVGPathView(const std::uint64_t* words, std::uint32_t count) noexcept : _words(words), _count(count)
	{
	}

	/// Number of commands.
	std::uint32_t GetCount() const noexcept
	{
		return _count;
	}

	/// True when there is no command.
	bool IsEmpty() const noexcept
	{
		return _count == 0;
	}

	/// Walks over the commands, forwards.
	class Iterator
	{
	public:
		using value_type = SVGPathCommand;
		using difference_type = std::ptrdiff_t;

		Iterator() noexcept = default;

		const SVGPathCommand& operator*() const noexcept
		{
			return _command;
		}

		const SVGPathCommand* operator->() const noexcept
		{
			return &_command;
		}

		Iterator& operator++() noexcept
		{
			_index++;
			Read();
			return *this;
		}

		Iterator operator++(int) noexcept
		{
			Iterator before = *this;
			++*this;
			return before;
		}

		bool operator==(const Iterator& other) const noexcept
		{
			return _index == other._index;
		}

	private:
		friend class SVGPathView;

		Iterator(const std::uint64_t* words, std::uint32_t index, std::uint32_t count) noexcept
			: _words(words), _index(index), _count(count)
		{
			Read();
		}

		void Read() noexcept
		{
			if (_index >= _count)
				return;
			_kinds = _index % kRun == 0 ? *_words++ : _kinds >> 2;
			_command = SVGPathCommand();
			_command.type = static_cast<SVGPathCommandType>(_kinds & 3);
			if (_command.type == SVGPathCommandType::cubic)
			{
				_command.points[0] = TakePoint();
				_command.points[1] = TakePoint();
			}
			if (_command.type != SVGPathCommandType::close)
				_command.points[2] = TakePoint();
		}

		Vector2d TakePoint() noexcept
		{
			const Vector2d point{std::bit_cast<Float>(_words[0]), std::bit_cast<Float>(_words[1])};
			_words += 2;
			return point;
		}

		const std::uint64_t* _words = nullptr;
		std::uint32_t _index = 0;
		std::uint32_t _count = 0;
		std::uint64_t _kinds = 0;
		SVGPathCommand _command;
	};

	/// The first command, and the place behind the last.
	Iterator begin() const noexcept
	{
		return Iterator(_words, 0, _count);
	}

	Iterator end() const noexcept
	{
		return Iterator(nullptr, _count, _count);
	}

private:
	const std::uint64_t* _words = nullptr;
	std::uint32_t _count = 0;
};

/// Paths, polygons and polylines.
class SVGPathEditInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svgpathedit";
	static constexpr const char* kName = "orvan.SVGPathEditInterface";
	static constexpr int kSlotCount = 5;

	/// Takes all commands away.
	ORVAN_METHOD(1, Result<void>, Clear, ())
	/// Replaces all commands. Nothing is checked: coordinates may be anything, and the first command need not be a
	/// move. An illegal argument is a command of no kind.
	ORVAN_METHOD(2, Result<void>, SetPath, (const BaseArray<SVGPathCommand>& commands), commands)
	/// The commands where they stand, without copying; good until the next change of the path.
	ORVAN_METHOD(3, SVGPathView, GetPathView, ())
	/// The commands as SVG path data, absolute, each number in the fewest digits that read back as the same double;
	/// empty for no commands. What is not finite has no form and is an illegal argument.
	ORVAN_METHOD(4, Result<String>, GetPathData, ())
	/// Replaces all commands by those of SVG path data, arcs, quadratic curves and relative commands included. A fault
	/// in it is an illegal argument that tells the place, and leaves the path as it was.
	ORVAN_METHOD(5, Result<void>, SetPathData, (const String& data), data)
};
using SVGPathEditRef = Ref<SVGPathEditInterface>;

/// Uses.
class SVGUseEditInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svguseedit";
	static constexpr const char* kName = "orvan.SVGUseEditInterface";
	static constexpr int kSlotCount = 2;

	/// The element that the link stands for, as it was last set or resolved; null while the link is dirty.
	ORVAN_METHOD(1, SVGElementRef, GetShadowRoot, ())
	/// Looks the link up in the document, makes what it finds the shadow root and returns it. Not found when the
	/// element stands in no document, or the document has no such id; illegal when the element found contains this one.
	ORVAN_METHOD(2, Result<SVGElementRef>, ResolveLink, ())
};
using SVGUseEditRef = Ref<SVGUseEditInterface>;

// Documents ----------------------------------------------------------------------------------------------------------

/// What an observer is told of.
enum class SVGChangeKind : std::int32_t
{
	attribute = 0,   ///< An attribute of `element` was set or removed; `attribute` is its number.
	text = 1,        ///< The characters of `element`.
	type = 2,        ///< The element type of `element`.
	inserted = 3,    ///< `element` came below `parent`, from outside of the tree or from elsewhere in it.
	removed = 4,     ///< `element` was taken out from below `parent`.
	loaded = 5,      ///< The document has another tree, or none: a load, a reload, a reset, another root. See `report`.
	notReloaded = 6, ///< An icon's file changed and could not be used; the tree stayed. `report` tells why.
};

/// One change. Made by the document for the duration of a call; copy the references to keep them.
struct SVGChange
{
	SVGChangeKind kind = SVGChangeKind::attribute;
	/// The number of the attribute; those that stand outside of the dictionary have theirs too. `unknown` when several
	/// changed at once.
	SVGImportAttribute attribute = SVGImportAttribute::unknown;
	SVGElementRef element; ///< Null for `loaded` and `notReloaded`.
	SVGElementRef parent;  ///< Of `inserted` and `removed`; null where it is an object of another kind.
	/// Of `loaded` and `notReloaded`, and null for others: what became of the load. Good during the call. A load that
	/// failed with an error, such as a file that could not be read, has the outcome `empty`.
	const SVGImportReport* report = nullptr;
};

/// Called after each change, on the thread that made it. It may do anything: edit (which is told in turn), remove
/// itself or others, let go of the document. Undo, redo and rolling back are illegal inside of an observer that is told
/// of several edits at once, as those three do.
using SVGChangeCallback = void (*)(void* context, const SVGChange& change) noexcept;

/// Documents and icons.
class SVGDocumentEditInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.image.interface.svgdocumentedit";
	static constexpr const char* kName = "orvan.SVGDocumentEditInterface";
	static constexpr int kSlotCount = 14;

	/// Has `callback` called with `context` for every change from now on, in the order of registration; through loads
	/// and resets, until it is removed or the document is gone. The result is its number, never 0. A document without
	/// observers spends nothing on them.
	ORVAN_METHOD(1, Result<std::int64_t>, AddObserver, (SVGChangeCallback callback, void* context), callback, context)
	/// Removes the observer of this number; it is not called any more from then on. Does nothing for other numbers.
	ORVAN_METHOD(2, void, RemoveObserver, (std::int64_t number), number)

	/// Begins a transaction. They nest: an inner one that is committed becomes a part of the outer one.
	ORVAN_METHOD(3, Result<void>, BeginTransaction, ())
	/// Ends the innermost transaction; the outermost becomes one step of the history, unless nothing was changed in it.
	/// Illegal when there is none. Out of memory when a change that could not fail was left out for want of it: the
	/// transaction is rolled back then.
	ORVAN_METHOD(4, Result<void>, CommitTransaction, ())
	/// Takes back what was changed in the innermost transaction, and ends it. Illegal when there is none.
	ORVAN_METHOD(5, Result<void>, RollbackTransaction, ())
	/// True between begin and end of a transaction.
	ORVAN_METHOD(6, bool, IsInTransaction, ())

	/// Takes back the last step of the history. False when there is none; illegal inside of a transaction.
	ORVAN_METHOD(7, Result<bool>, Undo, ())
	/// Makes the step again that was last taken back. False when there is none; illegal inside of a transaction.
	ORVAN_METHOD(8, Result<bool>, Redo, ())
	/// Number of steps that can be taken back.
	ORVAN_METHOD(9, std::int64_t, GetUndoCount, ())
	/// Number of steps that can be made again.
	ORVAN_METHOD(10, std::int64_t, GetRedoCount, ())
	/// Sets how many steps are kept, from 0 on; the oldest are forgotten. Initially 1000. A negative number is illegal.
	ORVAN_METHOD(11, Result<void>, SetUndoLimit, (std::int64_t count), count)
	/// Forgets all steps; changes are no longer recorded until the next transaction. Loads and resets do so too.
	/// Illegal inside of a transaction.
	ORVAN_METHOD(12, Result<void>, ClearHistory, ())

	/// Gives an element of the document another id, under which the document finds it from then on. References to the
	/// old one follow: links, fills and strokes, masks, clip paths, markers and filters of all elements; style sheets
	/// do not. When another element is found under the old id, nothing refers to this one, and references stay. Illegal
	/// when the id is empty, when another element of the document has it, or when the element is of no or of another
	/// document.
	ORVAN_METHOD(13, Result<void>, RenameId, (const SVGElementRef& element, const String& id), element, id)
	/// Makes an element without a parent, or none, the root of the document; the ids of its tree are found from then
	/// on, those of the former root no longer. Undone like any other change. The URL stays. Illegal when the element
	/// has a parent or is the root of another document.
	ORVAN_METHOD(14, Result<void>, SetRootElement, (const SVGElementRef& root), root)
};
using SVGDocumentEditRef = Ref<SVGDocumentEditInterface>;

ORVAN_DATA_TYPE(SVGElementEditRef, "orvan::SVGElementEditRef", "orvan::SVGElementEditRef");
ORVAN_DATA_TYPE(SVGPathEditRef, "orvan::SVGPathEditRef", "orvan::SVGPathEditRef");
ORVAN_DATA_TYPE(SVGUseEditRef, "orvan::SVGUseEditRef", "orvan::SVGUseEditRef");
ORVAN_DATA_TYPE(SVGDocumentEditRef, "orvan::SVGDocumentEditRef", "orvan::SVGDocumentEditRef");

} // namespace orvan
