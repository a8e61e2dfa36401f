// SPDX-License-Identifier: MIT
/// What is set up around an element while it is drawn, and taken down afterwards.
#pragma once

#include "cairo_context.h"

namespace orvan::cairo
{

/// An element being drawn: its transform and properties are in force for as long as the scope lives. The scopes form
/// a chain up to the first element, which is how references in circles are found.
class CairoContext::ElementScope
{
public:
	ElementScope(CairoContext& context, ObjectBase* element) noexcept
		: _context(context), _element(element), _outer(context._innermost), _saved(context._state)
	{
		const auto svgElement = SVGElementRef::From(element);
		context._innermost = this;
		if (++context._depth > kMaxDepth)
		{
			context.Omit(Omission::depth);
			return;
		}
		if (context._drawing == nullptr || !context.PayInReference(kElementWork))
			return;
		_attributes = svgElement->GetAttributeDictionary();
		State& state = context._state;
		state.style.Apply(_attributes);
		state.transform = state.transform * svgElement->GetLocalTransform();
		_canDraw = IsInvertible(state.transform);
	}

	ElementScope(const ElementScope&) = delete;

	~ElementScope()
	{
		_context._state = _saved;
		_context._innermost = _outer;
		_context._depth--;
	}

	/// False when the element is out of bounds in some way, or flattened to nothing by its transform.
	bool CanDraw() const noexcept
	{
		return _canDraw;
	}

	Effects GetEffects() const noexcept
	{
		return Effects(_attributes);
	}

	/// True when the element is this one's or stands around it, references followed.
	bool IsWithin(const ObjectBase* element) const noexcept
	{
		for (const ElementScope* scope = this; scope != nullptr; scope = scope->_outer)
		{
			if (scope->_element == element)
				return true;
		}
		return false;
	}

private:
	CairoContext& _context;
	const ObjectBase* _element;
	const ElementScope* _outer;
	State _saved;
	DataDictionary _attributes;
	bool _canDraw = false;
};

/// A reference being followed: what is drawn meanwhile is paid for. Afterwards the state is as it was.
class CairoContext::ReferenceScope
{
public:
	explicit ReferenceScope(CairoContext& context) noexcept
		: _context(context), _state(context._state), _mode(context._mode)
	{
		context._references++;
	}

	ReferenceScope(const ReferenceScope&) = delete;

	~ReferenceScope()
	{
		_context._state = _state;
		_context._mode = _mode;
		_context._references--;
	}

private:
	CairoContext& _context;
	State _state;
	Mode _mode;
};

/// Room for a layer of this many pixels, if the picture may have it.
class CairoContext::LayerScope
{
public:
	LayerScope(CairoContext& context, double pixels) noexcept
		: _context(context), _pixels(pixels), _isOpen(context._budget.OpenLayer(pixels))
	{
		context._layers++;
		if (!_isOpen)
			context.Omit(context._budget.IsExhausted() ? Omission::work : Omission::layers);
	}

	LayerScope(const LayerScope&) = delete;

	~LayerScope()
	{
		_context._layers--;
		if (_isOpen)
			_context._budget.CloseLayer(_pixels);
	}

	bool IsOpen() const noexcept
	{
		return _isOpen;
	}

private:
	CairoContext& _context;
	double _pixels;
	bool _isOpen;
};

/// The drawing library's own state, clips included.
class DrawingScope
{
public:
	explicit DrawingScope(cairo_t* drawing) noexcept : _drawing(drawing)
	{
		cairo_save(drawing);
	}

	DrawingScope(const DrawingScope&) = delete;

	~DrawingScope()
	{
		cairo_restore(_drawing);
	}

private:
	cairo_t* _drawing;
};

} // namespace orvan::cairo
