// SPDX-License-Identifier: MIT
/// Pictures, by whatever renderer is there.
#pragma once

#include "output.h"
#include "svg_render_target.h"

#include <optional>
#include <string>

namespace orvan::program
{

/// Draws a document into a file, a PNG or a PDF as `options.output` says, which appears under its name when it is
/// complete; "-" stands for standard output. Throws `Failure` when no loaded module draws, and when drawing or writing
/// fails.
void WritePicture(const SVGDocumentRef& document, const SVGRenderOptions& options, const std::string& path,
				  Output& output);

/// The kind of picture that the name of a file asks for; none when it is a picture's name of no kind.
std::optional<SVGRenderOutput> GetPictureKind(const std::string& path);

/// The suffix for the name of a picture of that kind, for example ".png".
std::string_view GetPictureSuffix(SVGRenderOutput kind);

} // namespace orvan::program
