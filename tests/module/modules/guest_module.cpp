// SPDX-License-Identifier: MIT
/// A small renderer in a module of its own: it writes down what it is asked to draw. Beside it stands a class that no
/// host can make, because nobody registers its interface, and an element of its own.
#include "orvan/diagnostics.h"
#include "orvan/module.h"
#include "svg_base.h"

ORVAN_DEFINE_MODULE();

namespace orvan
{
namespace
{

class Context : public ObjectBase
{
public:
	// clang-format off
	Result<void> DrawSVG(const SVGSVGElementRef& element) noexcept { return DrawContainer("svg", element); }
	Result<void> DrawUse(const SVGUseElementRef& element) noexcept { return Draw("use", element); }
	Result<void> DrawGroup(const SVGGroupElementRef& element) noexcept { return DrawContainer("group", element); }
	Result<void> DrawPath(const SVGPathElementRef& element) noexcept { return Draw("path", element); }
	Result<void> DrawRectangle(const SVGRectElementRef& element) noexcept { return Draw("rectangle", element); }
	Result<void> DrawLine(const SVGLineElementRef& element) noexcept { return Draw("line", element); }
	Result<void> DrawCircle(const SVGCircleElementRef& element) noexcept { return Draw("circle", element); }
	Result<void> DrawText(const SVGTextElementRef& element) noexcept { return Draw("text", element); }
	// clang-format on

private:
	template <typename I>
	Result<void> Draw(const char* what, const Ref<I>& element) noexcept
	{
		const String id = Cast<SVGElementInterface>(element)->GetId();
		if (id == "broken")
			return IllegalStateError("The pen is broken.");
		WarningOutput("@ @", what, id);
		return {};
	}

	template <typename I>
	Result<void> DrawContainer(const char* what, const Ref<I>& element) noexcept
	{
		ORVAN_TRY(Draw(what, element));
		return DrawSVGChildren(SVGContextRef::From(this), element);
	}
};

class LostInterface : public ObjectInterface
{
public:
	static constexpr const char* kId = "net.orvan.test.interface.lost";
	[[maybe_unused]] static constexpr const char* kName = "orvan.LostInterface";
	static constexpr int kSlotCount = 0;
};

/// An element that knows nothing but transforms. While it is not displayed, it fails; once it is shown, it tells what
/// is below it of a mark.
class ForeignElement : public HierarchyObject
{
public:
	Result<void> SetDisplay(SVGDisplay display) noexcept
	{
		_display = display;
		return {};
	}

	Result<Matrix2d> GetWorldTransform() noexcept
	{
		if (_display == SVGDisplay::none)
			return IllegalStateError("The place is unknown.");
		return Matrix2d{{100.0, 0.0}};
	}

	Result<void> MarkTransformDirty() noexcept
	{
		WarningOutput("marked");
		for (HierarchyObject* child = FirstChild(); child != nullptr && _display == SVGDisplay::shown;
			 child = child->NextSibling())
			ORVAN_TRY(SVGElementRef::From(child)->MarkTransformDirty());
		return ResultOf(_display == SVGDisplay::none ? IllegalStateError("No mark sticks.").Release() : nullptr);
	}

private:
	SVGDisplay _display = SVGDisplay::inherit;
};

template <typename Signature, auto method>
AnyMethod BindSlot() noexcept
{
	return detail::Call<Signature>::template To<ForeignElement, ForeignElement, method>();
}

/// Only the slots that are called are filled.
constexpr InterfaceBinding kForeignBindings[] = {
	Implements<HierarchyObjectInterface, HierarchyObject>::BindingFor<ForeignElement>(),
	{SVGElementInterface::kId, SVGElementInterface::kSlotCount,
	 [](AnyMethod* slots) noexcept
	 {
		 std::fill_n(slots, SVGElementInterface::kSlotCount, nullptr);
		 slots[10 - 1] = BindSlot<Result<Matrix2d>(), &ForeignElement::GetWorldTransform>();
		 slots[13 - 1] = BindSlot<Result<void>(SVGDisplay), &ForeignElement::SetDisplay>();
		 slots[39 - 1] = BindSlot<Result<void>(), &ForeignElement::MarkTransformDirty>();
	 }},
};

constexpr ClassDeclaration kForeign = []
{
	ClassDeclaration declaration = DeclareClass<ForeignElement>("net.orvan.test.class.element");
	declaration.bindings = kForeignBindings;
	declaration.bindingCount = std::size(kForeignBindings);
	return declaration;
}();

constexpr ClassDeclaration kLost =
	DeclareClass<Context, Implements<SVGContextInterface, Context>, Implements<LostInterface, Context>>(
		"net.orvan.test.class.lost");
constexpr ClassDeclaration kContext = DeclareClass<Context, Implements<SVGContextInterface, Context>>(kSVGContextClass);
constexpr UseDeclaration kUse = {"guest_module", "SVGContextInterface", "svg_base"};

const RegistrationEntry entries[] = {{RegistrationEntry::Kind::unit, "guest_module"},
									 {RegistrationEntry::Kind::module, "net.orvan.test.guest"},
									 kLost,
									 kContext,
									 kForeign,
									 kUse};

} // namespace
} // namespace orvan
