// SPDX-License-Identifier: MIT
/// A small file that uses every element and every attribute.
#pragma once

namespace orvan
{

inline constexpr const char* kEverything = R"(<?xml version='1.0'?>
<!DOCTYPE svg [<!ENTITY ns 'http://www.w3.org/2000/svg'>]>
<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' xmlns:s='http://www.w3.org/2000/svg'
	id='root' class='c' x='1' y='2px' width='50%' height='3mm' viewBox='0 0 10 10' preserveAspectRatio='xMinYMax slice'>
<!-- A comment --><defs id='d'>
<linearGradient id='lg' x1='0' y1='0.1' x2='1' y2='0' gradientUnits='userSpaceOnUse' spreadMethod='reflect'>
<stop offset='10%' stop-color='red' stop-opacity='0.5'/><stop offset='1' style='stop-color:#ff8000'/></linearGradient>
<radialGradient id='rg' cx='1' cy='2' fx='3' fy='4' r='5'/>
<mask id='m' x='1'><circle id='ci' cx='1' cy='2' r='3'/></mask><clipPath id='cp'><ellipse rx='1' ry='2'/></clipPath>
<symbol id='sy' viewBox='0 0 1 1'><line x1='1' y1='2' x2='3' y2='4'/></symbol></defs>
<g id='layer&#49;' transform='translate(1 2) rotate(30)' display='none' visibility='hidden' opacity='0.5' mask='url(#m)'
	clip-path='url(#cp)'><path id='p' d='M1 2h3v4q5 6 7 8t1 1C1 2 3 4 5 6s1 2 3 4A5 6 30 0 1 9 9z' fill='url(#lg)'
	fill-rule='evenodd' fill-opacity='0.25' stroke='rgb(1,2,3)' stroke-width='2' stroke-opacity='1'
	stroke-linejoin='round' stroke-linecap='square' stroke-miterlimit='3' stroke-dasharray='1,2 3' stroke-dashoffset='1'/>
<polygon points='0,0 1,0 1,1'/><polyline points='0 0 2 2'/><rect id='r' style='fill:none; stroke : url(#rg)'/></g>
<unknown><use id='u' xlink:href='#sy' width='1'/></unknown><s:g/>
<text id='t' font-size='12pt' font-family='Arial Bold Italic' font-style='oblique' font-weight='700'>a &amp; b</text>
</svg>
)";

} // namespace orvan
