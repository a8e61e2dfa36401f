// SPDX-License-Identifier: MIT
/// Pictures, by whatever renderer is there.
#pragma once

#include "svg_render_target.h"

#include <string>

namespace orvan::program
{

/// Draws a document into a file, a PNG or a PDF by the suffix of `path`. The kind of output in `options` is set here.
/// Throws `Failure` when no loaded module draws, and when drawing or writing fails.
void WritePicture(const SVGDocumentRef& document, SVGRenderOptions options, const std::string& path);

/// What is wrong with the name of a picture's file; empty when nothing is.
std::string CheckPictureName(const std::string& path);

} // namespace orvan::program
