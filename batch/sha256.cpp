// SPDX-License-Identifier: MIT
#include "batch/sha256.h"

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

#ifdef __x86_64__
#include <cpuid.h>
#include <immintrin.h>
#endif

namespace orvan::batch
{
namespace
{

using State = std::array<std::uint32_t, 8>;
/// Mixes whole blocks of 64 bytes into a state.
using Mix = void (*)(State& state, const unsigned char* blocks, std::size_t count);

constexpr std::size_t kBlock = 64;

// FIPS 180-4.
constexpr State kStart = {0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
						  0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};
alignas(16) constexpr std::array<std::uint32_t, 64> kRounds = {
	0x428a2f98, 0x71374491, 0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4, 0xab1c5ed5,
	0xd807aa98, 0x12835b01, 0x243185be, 0x550c7dc3, 0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174,
	0xe49b69c1, 0xefbe4786, 0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa, 0x5cb0a9dc, 0x76f988da,
	0x983e5152, 0xa831c66d, 0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967,
	0x27b70a85, 0x2e1b2138, 0x4d2c6dfc, 0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85,
	0xa2bfe8a1, 0xa81a664b, 0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070,
	0x19a4c116, 0x1e376c08, 0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f, 0x682e6ff3,
	0x748f82ee, 0x78a5636f, 0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2};

void MixPortably(State& state, const unsigned char* blocks, std::size_t count)
{
	for (; count > 0; count--, blocks += kBlock)
	{
		std::array<std::uint32_t, 64> words;
		for (std::size_t i = 0; i < 16; i++)
		{
			const unsigned char* at = blocks + 4 * i;
			words[i] = static_cast<std::uint32_t>(at[0]) << 24 | static_cast<std::uint32_t>(at[1]) << 16 |
					   static_cast<std::uint32_t>(at[2]) << 8 | at[3];
		}
		for (std::size_t i = 16; i < words.size(); i++)
		{
			const std::uint32_t a = words[i - 15];
			const std::uint32_t b = words[i - 2];
			words[i] = words[i - 16] + words[i - 7] + (std::rotr(a, 7) ^ std::rotr(a, 18) ^ a >> 3) +
					   (std::rotr(b, 17) ^ std::rotr(b, 19) ^ b >> 10);
		}
		auto [a, b, c, d, e, f, g, h] = state;
		for (std::size_t i = 0; i < words.size(); i++)
		{
			const std::uint32_t first = h + (std::rotr(e, 6) ^ std::rotr(e, 11) ^ std::rotr(e, 25)) +
										((e & f) ^ (~e & g)) + kRounds[i] + words[i];
			const std::uint32_t second =
				(std::rotr(a, 2) ^ std::rotr(a, 13) ^ std::rotr(a, 22)) + ((a & b) ^ (a & c) ^ (b & c));
			h = g;
			g = f;
			f = e;
			e = d + first;
			d = c;
			c = b;
			b = a;
			a = first + second;
		}
		const State mixed = {a, b, c, d, e, f, g, h};
		for (std::size_t i = 0; i < state.size(); i++)
			state[i] += mixed[i];
	}
}

#ifdef __x86_64__
/// With the processor's instructions, which keep the state as (a, b, e, f) and (c, d, g, h).
__attribute__((target("sha,sse4.1,ssse3"))) void MixByInstructions(State& state, const unsigned char* blocks,
																   std::size_t count)
{
	const __m128i bigEndian = _mm_set_epi64x(0x0c0d0e0f08090a0b, 0x0405060700010203);
	const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(state.data()));
	const __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(state.data() + 4));
	const __m128i badc = _mm_shuffle_epi32(low, 0xb1);
	const __m128i hgfe = _mm_shuffle_epi32(high, 0x1b);
	__m128i abef = _mm_alignr_epi8(badc, hgfe, 8);
	__m128i cdgh = _mm_blend_epi16(hgfe, badc, 0xf0);
	for (; count > 0; count--, blocks += kBlock)
	{
		const __m128i abefBefore = abef;
		const __m128i cdghBefore = cdgh;
		__m128i words[4];
#pragma GCC unroll 16 // So that the words stay in registers.
		for (std::size_t i = 0; i < 16; i++)
		{
			__m128i& word = words[i % 4];
			if (i < 4)
				word = _mm_shuffle_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(blocks) + i), bigEndian);
			else
			{
				// Four words of the schedule from the sixteen before.
				const __m128i sum = _mm_add_epi32(_mm_sha256msg1_epu32(word, words[(i + 1) % 4]),
												  _mm_alignr_epi8(words[(i + 3) % 4], words[(i + 2) % 4], 4));
				word = _mm_sha256msg2_epu32(sum, words[(i + 3) % 4]);
			}
			const __m128i round =
				_mm_add_epi32(word, _mm_load_si128(reinterpret_cast<const __m128i*>(kRounds.data()) + i));
			cdgh = _mm_sha256rnds2_epu32(cdgh, abef, round);
			abef = _mm_sha256rnds2_epu32(abef, cdgh, _mm_shuffle_epi32(round, 0x0e));
		}
		abef = _mm_add_epi32(abef, abefBefore);
		cdgh = _mm_add_epi32(cdgh, cdghBefore);
	}
	const __m128i feba = _mm_shuffle_epi32(abef, 0x1b);
	const __m128i dchg = _mm_shuffle_epi32(cdgh, 0xb1);
	_mm_storeu_si128(reinterpret_cast<__m128i*>(state.data()), _mm_blend_epi16(feba, dchg, 0xf0));
	_mm_storeu_si128(reinterpret_cast<__m128i*>(state.data() + 4), _mm_alignr_epi8(dchg, feba, 8));
}
#endif

Mix FindFastest()
{
#ifdef __x86_64__
	constexpr unsigned kHasSha = 1U << 29;
	unsigned a = 0;
	unsigned b = 0;
	unsigned c = 0;
	unsigned d = 0;
	if (__get_cpuid_count(7, 0, &a, &b, &c, &d) != 0 && (b & kHasSha) != 0 && __builtin_cpu_supports("sse4.1"))
		return &MixByInstructions;
#endif
	return &MixPortably;
}

std::string Hash(std::string_view bytes, Mix mix)
{
	State state = kStart;
	const auto* at = reinterpret_cast<const unsigned char*>(bytes.data());
	const std::size_t whole = bytes.size() / kBlock;
	mix(state, at, whole);
	// The rest, a bit that is set, and the number of bits in the last eight bytes.
	std::array<unsigned char, 2 * kBlock> end = {};
	const std::size_t rest = bytes.size() % kBlock;
	if (rest != 0)
		std::memcpy(end.data(), at + whole * kBlock, rest);
	end[rest] = 0x80;
	const std::size_t blocks = rest + 9 > kBlock ? 2 : 1;
	std::uint64_t bits = static_cast<std::uint64_t>(bytes.size()) * 8;
	for (std::size_t i = blocks * kBlock; bits != 0; bits >>= 8)
		end[--i] = static_cast<unsigned char>(bits & 255);
	mix(state, end.data(), blocks);
	std::string text;
	for (const std::uint32_t word : state)
	{
		for (int shift = 28; shift >= 0; shift -= 4)
			text += "0123456789abcdef"[word >> shift & 15];
	}
	return text;
}

} // namespace

std::string GetSha256(std::string_view bytes)
{
	static const Mix fastest = FindFastest();
	return Hash(bytes, fastest);
}

std::string GetPortableSha256(std::string_view bytes)
{
	return Hash(bytes, &MixPortably);
}

} // namespace orvan::batch
