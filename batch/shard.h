// SPDX-License-Identifier: MIT
/// The results of a chunk.
#pragma once

#include "batch/columns.h"
#include "batch/row.h"

#include <string>
#include <utility>
#include <vector>

namespace orvan::batch
{

/// Gathers rows, columns and files, and writes them as a folder that appears whole or not at all.
class Shard
{
public:
	/// How far a shard has come.
	struct Mark
	{
		std::vector<std::size_t> columns;
		std::size_t files;
	};

	Shard(std::span<const ColumnKind> columnKinds, bool hasFiles) : columns(columnKinds), _hasFiles(hasFiles)
	{
	}

	void AddRow(const Row& row)
	{
		_rows += row.ToLine();
	}

	void AddFile(std::string name, std::string content)
	{
		_files.emplace_back(std::move(name), std::move(content));
	}

	Mark GetMark() const
	{
		return {columns.GetSizes(), _files.size()};
	}

	/// Takes back what an input has added to columns and files, because it could not be finished.
	void GoBackTo(const Mark& mark)
	{
		columns.CutOff(mark.columns);
		_files.resize(mark.files);
	}

	/// Writes `rows.jsonl`, `columns.npz` where there are columns, `files.tar` where there may be files. Does nothing
	/// when the folder is there already. Throws `std::runtime_error`.
	void Write(const std::string& folder);

	Columns columns;

private:
	std::string _rows;
	std::vector<std::pair<std::string, std::string>> _files; ///< Names and contents.
	bool _hasFiles;
};

} // namespace orvan::batch
