// SPDX-License-Identifier: MIT
#include "batch/sha256.h"

#include <array>
#include <nettle/base16.h>
#include <nettle/sha2.h>

namespace orvan::batch
{

std::string GetSha256(std::string_view bytes)
{
	sha256_ctx hash;
	sha256_init(&hash);
	sha256_update(&hash, bytes.size(), reinterpret_cast<const std::uint8_t*>(bytes.data()));
	std::array<std::uint8_t, SHA256_DIGEST_SIZE> digest;
	sha256_digest(&hash, digest.size(), digest.data());
	std::string text(BASE16_ENCODE_LENGTH(digest.size()), '\0');
	base16_encode_update(text.data(), digest.size(), digest.data());
	return text;
}

} // namespace orvan::batch
