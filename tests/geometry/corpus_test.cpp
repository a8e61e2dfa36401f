// SPDX-License-Identifier: MIT
/// The corpus: small pictures, and beside each all answers about it; see corpus/README.md.
#include "corpus_answers.h"
#include "support/corpus_files.h"
#include "svg_edit.h"

namespace orvan
{
namespace
{

namespace fs = std::filesystem;
using test::ReadFile;

/// Of two texts the lines that differ, where numbers may be a millionth off.
std::string FindDifference(const std::string& expected, const std::string& found)
{
	const char* a = expected.c_str();
	const char* b = found.c_str();
	const auto isNumber = [](const char* at)
	{
		at += *at == '-' ? 1 : 0;
		at += *at == '.' ? 1 : 0;
		return *at >= '0' && *at <= '9';
	};
	while (*a != '\0' || *b != '\0')
	{
		bool isSame = *a == *b;
		if (isNumber(a) && isNumber(b))
		{
			char* endA = nullptr;
			char* endB = nullptr;
			const double numberA = std::strtod(a, &endA);
			const double numberB = std::strtod(b, &endB);
			isSame = std::abs(numberA - numberB) <= 1e-6 * std::max({std::abs(numberA), std::abs(numberB), 1.0});
			if (isSame)
			{
				a = endA;
				b = endB;
				continue;
			}
		}
		if (!isSame)
		{
			const auto lineOf = [](const std::string& text, const char* at)
			{
				const auto place = static_cast<std::size_t>(at - text.c_str());
				const std::size_t begin = place == 0 ? 0 : text.rfind('\n', place - 1) + 1;
				return text.substr(begin, text.find('\n', place) - begin);
			};
			return lineOf(expected, a) + "\ninstead there is\n" + lineOf(found, b);
		}
		a++;
		b++;
	}
	return "";
}

class AnswerCorpus : public GeometryTest, public testing::WithParamInterface<std::string>
{
protected:
	static CorpusAnswers Open()
	{
		fs::path file = fs::path(ORVAN_GEOMETRY_CORPUS) / (GetParam() + ".svg");
		if (!fs::exists(file))
			file = fs::path(ORVAN_PICTURES) / (GetParam() + ".svg");
		return CorpusAnswers(ReadFile(file));
	}

	static SVGGeometryRef Ask(const CorpusAnswers& answers)
	{
		const auto geometry = Must(CreateObject<SVGGeometryInterface>(kSVGGeometryClass));
		Must(geometry->SetDocument(answers.GetDocument(), {}));
		return geometry;
	}
};

TEST_P(AnswerCorpus, IsAnsweredAsItWas)
{
	CorpusAnswers answers = Open();
	const std::string found = answers.AskAll(Ask(answers));
	const fs::path file = fs::path(ORVAN_GEOMETRY_CORPUS) / (GetParam() + ".txt");
	const std::string stored = ReadFile(file);
	if (std::getenv("ORVAN_REWRITE_CORPUS") != nullptr)
		std::ofstream(file, std::ios::binary) << found;
	EXPECT_EQ("", FindDifference(stored, found));
}

/// Elements are edited, moved and taken out one after the other. What is patched then must answer as what is new does.
TEST_P(AnswerCorpus, IsAnsweredAfterEditsAsAnew)
{
	constexpr std::pair<const char*, const char*> kEdits[] = {{"transform", "rotate(7 20 30)"},
															  {"display", "none"},
															  {"stroke-width", "7"},
															  {"visibility", "hidden"},
															  {"clip-path", "inset(1px)"},
															  {"fill", "url(#l1)"},
															  {"stroke", "#123"},
															  {"opacity", ".3"},
															  {"x", "13"},
															  {"width", "31"},
															  {"d", "M1 2h30v9z"},
															  {"font-size", "17"},
															  {"pointer-events", "all"},
															  {"mask", "url(#m1)"},
															  {"href", "#nothing"},
															  {"viewBox", "0 0 90 70"},
															  {"id", "other"},
															  {"class", "m"},
															  {"fill", "none"},
															  {"marker-end", "url(#rev)"},
															  {"stroke-dasharray", "5 3"},
															  {"filter", "blur(1px)"},
															  {"cx", "33"},
															  {"clip-path", "none"}};
	CorpusAnswers answers = Open();
	const SVGGeometryRef geometry = Ask(answers);
	answers.AskQuickly(geometry);
	const auto source = Cast<SVGDocumentSourceInterface>(answers.GetDocument());
	const std::size_t count = answers.GetElements().size();
	for (std::size_t step = 0; step < 30; step++)
	{
		const std::size_t number = (step * step * 5 + step * 3 + 1) % count;
		const SVGElementRef& element = answers.GetElements()[number];
		const auto parent = Must(Cast<HierarchyObjectInterface>(element)->GetParent());
		const auto& [name, value] = kEdits[(number + step) % std::size(kEdits)];
		SCOPED_TRACE("step " + std::to_string(step) + ": " + std::to_string(number) + ' ' + name);
		if (step % 6 == 5 && parent)
			Must(Cast<SVGElementEditInterface>(element)->Remove());
		else if (step % 6 == 3 && parent)
			IgnoreResult(Cast<SVGElementEditInterface>(parent)->InsertChildBefore(
				element, Cast<SVGElementEditInterface>(parent)->GetChildAt(0)));
		else // Some count on other elements only.
			IgnoreResult(source->SetAttributeText(element, Text(name), Text(value)));
		if (step % 5 == 1 || step % 5 == 3) // Several edits come together.
			continue;
		const std::string anew = answers.AskQuickly(Ask(answers));
		ASSERT_EQ("", FindDifference(anew, answers.AskQuickly(geometry)));
	}
}

INSTANTIATE_TEST_SUITE_P(Files, AnswerCorpus, testing::ValuesIn(test::NamesIn(ORVAN_GEOMETRY_CORPUS, ".txt")),
						 test::TestNameOf);

} // namespace
} // namespace orvan
