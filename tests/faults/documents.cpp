// SPDX-License-Identifier: Apache-2.0
#include "tests/faults/documents.h"

#include "tests/support/sample_images.h"

std::string DocumentOfEverything() {
    const std::string png = ToBase64(SamplePng(3, 2)), jpeg = ToBase64(SampleJpeg(8, 8)),
                      bmp = ToBase64(SampleBmp(2, 2));
    return R"svg(<svg xmlns="http://www.w3.org/2000/svg" xmlns:xlink="http://www.w3.org/1999/xlink">
<svg id="the-first-of-two-pages" width="60mm" height="40mm" viewBox="0 0 200 130">
<title>Everything, and more: ąbč Ελληνικά</title><desc>One of each kind of element</desc>
<defs><symbol id="a-symbol-with-a-name" viewBox="0 0 10 10"><circle cx="5" cy="5" r="4"/><desc>a bolt and a nut</desc></symbol>
<marker id="tip" refX="3" refY="2" markerWidth="6" markerHeight="4"><polygon points="0,0 6,2 0,4"/></marker>
<linearGradient id="fade"><stop offset="0" stop-color="red"/></linearGradient>
<clipPath id="hole"><rect width="5" height="5"/></clipPath>
<pattern id="tiles" width="4" height="4" patternUnits="userSpaceOnUse"><image width="3" height="2" xlink:href="data:image/png;base64,)svg" +
           png + R"svg("/></pattern>
<g id="a-leg-of-the-table"><line x1="0" y1="0" x2="0" y2="30" fill="none" stroke="black"/></g></defs>
<g id="a-group-of-shapes" fill="#0a0" stroke="navy" stroke-width="0.5mm" opacity="0.5"><title>Shapes of all kinds there are</title>
<rect x="20" y="30" width="10%" height="10%" rx="4" clip-path="url(#hole)"/><circle cx="80" cy="60" r="5%"/>
<ellipse cx="120" cy="60" rx="20" ry="12" style="fill:none;stroke:red;stroke-dasharray:5 3 2;stroke-linecap:round"/>
<line x1="10" y1="10" x2="60" y2="90" marker-end="url(#tip)"/>
<polyline fill="none" points="10,100 20,110 30 100 40" marker-mid="url(#tip)" transform="translate(5) rotate(3) skewX(1)"/>
<polygon fill="url(#tiles)" points="150 20 190 20 170 50"/></g>
<use xlink:href="#a-symbol-with-a-name" x="150" y="40" width="30" height="20" fill="grey"/>
<use xlink:href="#a-leg-of-the-table" x="180" y="10" height="60" width="4" stroke="black"/>
<use xlink:href="#a-leg-of-the-table" x="185" y="10"/>
<path id="a-path-with-holes" fill="teal" fill-rule="evenodd" d="M20 90h40v30H20zM30 100l20 0 0 10-20 0z" marker-start="url(#tip)"><desc>a frame of wood</desc></path>
<path fill="none" stroke="black" d="M100 90C110 70 130 70 140 90s20 20 40 0q10-20 20 0t20 0A20 10 30 0 1 260 90a5 0 0 0 0 10 10"/>
<path fill="url(#fade)" d="M1 1h9v9z"/>
<a xlink:href="#a-group-of-shapes" xlink:show="new"><text x="20" y="120" dx="2" dy="3" fill="black" font-size="14" text-anchor="middle" letter-spacing="1pt">Hello, world of long texts
<desc>a greeting to all readers</desc></text></a>
<a xlink:href="http://example.org/a/long/address"><text x="60" y="126" fill="navy" stroke="red" font-family="serif">Ελλ שלום fi</text></a>
<text fill="black" style="font-weight:bold;writing-mode:tb;text-anchor:end;text-transform:capitalize" x="10%" y="10%">  down </text>
<svg x="5" y="5" width="20" height="20" viewBox="0 0 2 2"><rect width="1" height="1" fill="red" stroke="none"/></svg>
<image x="150" y="80" width="20" height="10" xlink:href="data:image/png;base64,)svg" +
           png + R"svg("/>
<image x="160" y="90" width="20" height="10" xlink:href="data:image/jpeg;base64,)svg" +
           jpeg + R"svg("/>
<image x="170" y="100" width="20" height="10" transform="rotate(10)" xlink:href="data:image/bmp;base64,)svg" +
           bmp + R"svg("/>
</svg>
<svg width="20mm" height="10mm"><title>The second page of two pages</title><rect width="9" height="9" fill="red" opacity="0.4"/></svg>
</svg>)svg";
}

std::string LargeDocument() {
    std::string points;
    for (unsigned int i = 0; i < 30'000; ++i)
        points += std::to_string(i * 7919 % 9973) + "." + std::to_string(i % 7) + "," +
                  std::to_string(i * 104'729 % 9967) + ".5 ";
    return "<svg width='10000' height='10000'><polyline fill='none' stroke='red' points='" + points +
           "'/></svg>";
}

std::string EmbeddingDocument() {
    return "<report><chapter name='the first of them'>" + DocumentOfEverything() + "</chapter></report>";
}
