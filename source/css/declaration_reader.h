// SPDX-License-Identifier: MIT
#pragma once

#include "declarations.h"
#include "tokenizer.h"

#include <cstddef>
#include <memory_resource>
#include <vector>

namespace orvan::css
{
/// Reads a list of declarations off a tokenizer.
class DeclarationReader
{
public:
	/// Appends up to `room` declarations to `declarations`; what is over is reported once.
	DeclarationReader(Tokenizer& tokens, const ReadOptions& options, std::size_t room,
					  std::pmr::vector<Declaration>& declarations)
		: _tokens(tokens), _options(options), _room(room), _declarations(declarations)
	{
	}

	/// Reads to the end of the text.
	void Read();

	/// Reads a declaration in a block, whose "}" is left standing. False, without a report, when what stands here is no
	/// declaration for want of a name or a colon, or because of a block: it may be a rule. Then the tokens stand
	/// anywhere.
	bool ReadInBlock()
	{
		return ReadDeclaration(true);
	}

private:
	bool ReadDeclaration(bool isInBraces);
	bool ReadName(Declaration& declaration);
	const char* ReadValue(Declaration& declaration, bool isInBraces);
	bool IsAtStop(bool isInBraces) const;
	void Append(const Declaration& declaration);
	void Report(std::size_t offset, std::string_view message) const;

	Tokenizer& _tokens;
	const ReadOptions& _options;
	std::size_t _room;
	std::pmr::vector<Declaration>& _declarations;
	bool _isFull = false;
};
} // namespace orvan::css
