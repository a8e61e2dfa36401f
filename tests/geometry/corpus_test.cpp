// SPDX-License-Identifier: MIT
/// The corpus: small pictures, and beside each all answers about it; see corpus/README.md.
#include "corpus_answers.h"

namespace orvan
{
namespace
{

namespace fs = std::filesystem;

std::string ReadFile(const fs::path& path)
{
	std::ifstream file(path, std::ios::binary);
	return {std::istreambuf_iterator<char>(file), {}};
}

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

/// What is named here has a picture beside it, or one of that name among those of the renderer.
std::vector<std::string> Names()
{
	std::vector<std::string> names;
	for (const fs::directory_entry& entry : fs::directory_iterator(ORVAN_GEOMETRY_CORPUS))
	{
		if (entry.path().extension() == ".txt")
			names.push_back(entry.path().stem());
	}
	std::sort(names.begin(), names.end());
	return names;
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
	if (std::getenv("ORVAN_REWRITE_CORPUS") != nullptr)
		std::ofstream(file, std::ios::binary) << found;
	EXPECT_EQ("", FindDifference(ReadFile(file), found));
}

std::string TestName(const testing::TestParamInfo<std::string>& test)
{
	std::string name = test.param;
	std::replace(name.begin(), name.end(), '-', '_');
	return name;
}

INSTANTIATE_TEST_SUITE_P(Files, AnswerCorpus, testing::ValuesIn(Names()), TestName);

} // namespace
} // namespace orvan
