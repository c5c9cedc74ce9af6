#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Writes small drawings, one for each feature of static SVG and each oddity of its syntax, for compare_findings.py.

    tests/smoke/feature_documents.py FOLDER
"""

import sys
from pathlib import Path

# Name and content of each drawing, of 200 x 200 units. Content that begins with a root element, "<?" or "<!" is a whole
# document.
DRAWINGS = r"""
plain-rect              <rect x="20" y="20" width="100" height="60" fill="red" stroke="blue" stroke-width="8"/>
plain-circle            <circle cx="100" cy="100" r="60" fill="red" stroke="blue" stroke-width="8"/>
plain-ellipse           <ellipse cx="100" cy="100" rx="60" ry="30" fill="red" stroke="blue" stroke-width="8"/>
plain-line              <line x1="20" y1="30" x2="150" y2="120" stroke="blue" stroke-width="8"/>
plain-polyline          <polyline points="20,20 100,30 60,150" fill="none" stroke="blue" stroke-width="8"/>
plain-polygon           <polygon points="20,20 100,30 60,150" fill="red" stroke="blue" stroke-width="8"/>
plain-path              <path d="M20 20 L100 30 C150 40 150 100 60 150 Q30 100 20 60 Z" fill="red" stroke="blue" stroke-width="8"/>
plain-group             <g fill="red" transform="translate(20 30)"><rect width="50" height="50"/><circle cx="100" cy="50" r="20"/></g>
plain-text              <text x="20" y="100" font-family="Liberation Sans" font-size="30">Hello</text>
plain-use               <defs><rect id="a" width="40" height="40"/></defs><use xlink:href="#a" x="20" y="20" fill="red"/>
plain-group-of-one      <g opacity="0.5"><rect x="20" y="20" width="100" height="60" fill="red"/></g>
stroke-open-path        <path d="M20 20 L150 30 L150 150" fill="red" stroke="blue" stroke-width="16"/>
stroke-open-path-2      <path d="M20 20 L150 30 L150 150 M20 100 L80 110 L20 180" fill="red" stroke="blue" stroke-width="16"/>
stroke-bare-runs        <path d="M20 150 L60 40 C60 40 150 20 150 100 L20 180" fill="none" stroke="blue" stroke-width="24"/>
stroke-bare-closed      <path d="M40 40 L150 40 L150 150 L40 150 Z" fill="none" stroke="blue" stroke-width="30"/>
stroke-bare-closed-to   <path d="M40 40 L150 40 L150 150 L40 150 L40 40 Z" fill="none" stroke="blue" stroke-width="30"/>
stroke-bare-arc         <path d="M40 150 L40 80 A30 30 0 0 1 100 80 L100 150" fill="none" stroke="blue" stroke-width="24" stroke-dasharray="20 12"/>
stroke-bare-curve-close <path d="M40 40 C150 40 150 100 100 150 Z" fill="none" stroke="blue" stroke-width="30"/>
stroke-bare-opacity     <path d="M20 150 L60 40 C60 40 150 20 150 100 L20 180" fill="none" stroke="blue" stroke-width="40" stroke-opacity="0.5"/>
stroke-bare-join-round  <path d="M20 150 L60 40 C60 40 150 20 150 100 L20 180" fill="none" stroke="blue" stroke-width="24" stroke-linejoin="round"/>
stroke-bare-cap-square  <path d="M20 150 L60 40 C60 40 150 20 150 100 L20 180" fill="none" stroke="blue" stroke-width="24" stroke-linecap="square"/>
stroke-bare-dash        <path d="M20 150 L60 40 C60 40 150 20 150 100 L20 180" fill="none" stroke="blue" stroke-width="12" stroke-dasharray="25 15"/>
stroke-filled-dash      <path d="M20 150 L60 40 C60 40 150 20 150 100 L20 180 Z" fill="red" stroke="blue" stroke-width="12" stroke-dasharray="25 15"/>
stroke-rect-dash        <rect x="20" y="20" width="120" height="70" fill="none" stroke="blue" stroke-width="12" stroke-dasharray="25 15"/>
stroke-circle-dash      <circle cx="100" cy="100" r="60" fill="none" stroke="blue" stroke-width="12" stroke-dasharray="25 15"/>
stroke-ellipse-dash     <ellipse cx="100" cy="100" rx="80" ry="40" fill="none" stroke="blue" stroke-width="12" stroke-dasharray="25 15"/>
stroke-polygon-dash     <polygon points="20,20 150,40 60,170" fill="none" stroke="blue" stroke-width="12" stroke-dasharray="25 15"/>
stroke-path-meets       <path d="M40 40 L150 40 L150 150 L40 150 L40 40" fill="none" stroke="blue" stroke-width="30"/>
stroke-path-meets-fill  <path d="M40 40 L150 40 L150 150 L40 150 L40 40" fill="red" stroke="blue" stroke-width="30"/>
stroke-curve-meets      <path d="M40 40 L150 40 C150 90 90 150 40 150 L40 40" fill="none" stroke="blue" stroke-width="30"/>
stroke-arc-close        <path d="M40 100 A60 60 0 0 1 160 100 z" fill="red" stroke="blue" stroke-width="30"/>
stroke-arc-close-bare   <path d="M40 100 A60 60 0 0 1 160 100 z" fill="none" stroke="blue" stroke-width="30"/>
stroke-arc-close-later  <path d="M40 180 V100 A60 60 0 0 1 160 100 z" fill="red" stroke="blue" stroke-width="30"/>
stroke-polyline-closed  <polyline points="40,40 150,40 150,150 40,150 40,40" fill="none" stroke="blue" stroke-width="30"/>
stroke-dash-odd         <line x1="20" y1="50" x2="180" y2="50" stroke="blue" stroke-width="12" stroke-dasharray="20 5 10"/>
stroke-dash-odd-one     <line x1="20" y1="50" x2="180" y2="50" stroke="blue" stroke-width="12" stroke-dasharray="20"/>
stroke-dash-zeros       <line x1="20" y1="50" x2="180" y2="50" stroke="blue" stroke-width="12" stroke-dasharray="0 0"/>
stroke-dash-zero-one    <line x1="20" y1="50" x2="180" y2="50" stroke="blue" stroke-width="12" stroke-dasharray="0"/>
stroke-dash-dots        <line x1="20" y1="50" x2="180" y2="50" stroke="blue" stroke-width="12" stroke-dasharray="0 20" stroke-linecap="round"/>
stroke-dash-negative    <line x1="20" y1="50" x2="180" y2="50" stroke="blue" stroke-width="12" stroke-dasharray="20 -5"/>
stroke-dash-commas      <line x1="20" y1="50" x2="180" y2="50" stroke="blue" stroke-width="12" stroke-dasharray="20,5,10,5"/>
stroke-dash-px          <line x1="20" y1="50" x2="180" y2="50" stroke="blue" stroke-width="12" stroke-dasharray="20px,5px"/>
stroke-dash-mm          <line x1="20" y1="50" x2="180" y2="50" stroke="blue" stroke-width="12" stroke-dasharray="5mm 2mm"/>
stroke-dash-percent     <line x1="20" y1="50" x2="180" y2="50" stroke="blue" stroke-width="12" stroke-dasharray="10% 5%"/>
stroke-dashoffset       <line x1="20" y1="50" x2="180" y2="50" stroke="blue" stroke-width="12" stroke-dasharray="40" stroke-dashoffset="20"/>
stroke-cap-square       <line x1="50" y1="50" x2="150" y2="50" stroke="blue" stroke-width="30" stroke-linecap="square"/>
stroke-cap-round        <line x1="50" y1="50" x2="150" y2="50" stroke="blue" stroke-width="30" stroke-linecap="round"/>
stroke-join-bevel       <polyline points="40,40 150,40 60,150" fill="none" stroke="blue" stroke-width="30" stroke-linejoin="bevel"/>
stroke-join-round       <polyline points="40,40 150,40 60,150" fill="none" stroke="blue" stroke-width="30" stroke-linejoin="round"/>
stroke-miter-sharp      <polyline points="20,90 150,100 20,110" fill="none" stroke="blue" stroke-width="10"/>
stroke-miter-35         <polyline points="20,60 150,100 20,140" fill="none" stroke="blue" stroke-width="10"/>
stroke-miter-28         <polyline points="20,70 140,100 20,130" fill="none" stroke="blue" stroke-width="16"/>
stroke-miter-limit-10   <polyline points="20,80 120,100 20,120" fill="none" stroke="blue" stroke-width="16" stroke-miterlimit="10"/>
stroke-miter-limit-1    <polyline points="40,40 150,40 150,150" fill="none" stroke="blue" stroke-width="30" stroke-miterlimit="1"/>
stroke-width-zero       <rect x="20" y="20" width="100" height="60" fill="none" stroke="blue" stroke-width="0"/>
stroke-width-zero-line  <path d="M20 20 L150 40 L150 150 L20 120z" fill="none" stroke="black" stroke-width="0"/>
stroke-width-negative   <rect x="20" y="20" width="100" height="60" fill="none" stroke="blue" stroke-width="-8"/>
stroke-width-percent    <rect x="20" y="20" width="100" height="60" fill="none" stroke="blue" stroke-width="10%"/>
stroke-width-thin       <line x1="20" y1="20" x2="180" y2="150" stroke="blue" stroke-width="0.2"/>
stroke-width-default    <line x1="20" y1="20" x2="180" y2="150" stroke="blue"/>
stroke-width-em         <line x1="20" y1="20" x2="180" y2="150" stroke="blue" stroke-width="1em"/>
stroke-scaled-uneven    <g transform="scale(3 1)"><circle cx="30" cy="100" r="20" fill="none" stroke="blue" stroke-width="8"/></g>
stroke-scaled-skew      <rect transform="skewX(30)" x="10" y="30" width="60" height="60" fill="none" stroke="blue" stroke-width="16"/>
stroke-non-scaling      <rect transform="scale(4)" x="5" y="5" width="20" height="20" fill="none" stroke="blue" stroke-width="3" vector-effect="non-scaling-stroke"/>
stroke-paint-order      <text x="20" y="100" font-family="Liberation Sans" font-size="60" fill="red" stroke="blue" stroke-width="8" paint-order="stroke">AB</text>
stroke-text             <text x="20" y="100" font-family="Liberation Sans" font-size="60" fill="red" stroke="blue" stroke-width="8">AB</text>
stroke-inherit          <g stroke="none"><rect x="20" y="20" width="100" height="60" fill="red" stroke="inherit" stroke-width="20"/></g>
fill-inherit            <g fill="none"><rect x="20" y="20" width="100" height="60" fill="inherit" stroke="red"/></g>
fill-inherit-colour     <g fill="red"><rect x="20" y="20" width="100" height="60" fill="inherit"/></g>
fill-initial-style      <g fill="red"><rect x="20" y="20" width="100" height="60" style="fill:initial"/></g>
fill-unset-style        <g fill="red"><rect x="20" y="20" width="100" height="60" style="fill:unset"/></g>
fill-inherit-style      <g fill="none"><rect x="20" y="20" width="100" height="60" style="fill:inherit;stroke:red"/></g>
width-inherit           <g stroke-width="20"><rect x="20" y="20" width="100" height="60" stroke-width="inherit" stroke="red" fill="none"/></g>
zero-rect               <rect x="20" y="20" width="100" height="0" stroke="blue" stroke-width="8"/>
zero-rect-width         <rect x="20" y="20" height="100" stroke="blue" stroke-width="8"/>
negative-rect           <rect x="120" y="20" width="-100" height="60" fill="red"/>
negative-rect-height    <rect x="20" y="120" width="100" height="-60" fill="red"/>
zero-circle             <circle cx="100" cy="100" r="0" stroke="blue" stroke-width="30"/>
zero-circle-cap         <circle cx="100" cy="100" r="0" stroke="blue" stroke-width="30" stroke-linecap="round"/>
missing-radius          <circle cx="100" cy="100" stroke="blue" stroke-width="30"/>
negative-circle         <circle cx="100" cy="100" r="-50" fill="red"/>
zero-ellipse            <ellipse cx="100" cy="100" rx="50" ry="0" stroke="blue" stroke-width="30"/>
negative-ellipse        <ellipse cx="100" cy="100" rx="50" ry="-30" fill="red" stroke="blue" stroke-width="10"/>
one-radius-ellipse      <ellipse cx="100" cy="100" rx="50" fill="red"/>
one-radius-ellipse-y    <ellipse cx="100" cy="100" ry="50" fill="red"/>
zero-line-round         <line x1="100" y1="100" x2="100" y2="100" stroke="blue" stroke-width="40" stroke-linecap="round"/>
zero-line-square        <line x1="100" y1="100" x2="100" y2="100" stroke="blue" stroke-width="40" stroke-linecap="square"/>
zero-line-butt          <line x1="100" y1="100" x2="100" y2="100" stroke="blue" stroke-width="40"/>
zero-path-round         <path d="M100 100 L100 100" stroke="blue" stroke-width="40" stroke-linecap="round"/>
zero-path-square        <path d="M100 100 L100 100" fill="none" stroke="blue" stroke-width="40" stroke-linecap="square"/>
zero-path-close         <path d="M100 100 Z" stroke="blue" stroke-width="40" stroke-linecap="round"/>
zero-path-h             <path d="M100 100 h0" stroke="blue" stroke-width="40" stroke-linecap="round"/>
zero-path-curve         <path d="M100 100 C100 100 100 100 100 100" fill="none" stroke="blue" stroke-width="40" stroke-linecap="round"/>
zero-path-move-only     <path d="M100 100" stroke="blue" stroke-width="40" stroke-linecap="round"/>
zero-path-in-other      <path d="M20 20 L80 20 M100 100 L100 100 M20 180 L180 180" fill="none" stroke="blue" stroke-width="30" stroke-linecap="round"/>
zero-path-in-filled     <path d="M20 20 L80 20 L60 60z M120 120 L120 120 M20 180 L180 180" fill="red" stroke="blue" stroke-width="30" stroke-linecap="round"/>
zero-path-butt          <path d="M100 100 L100 100" stroke="blue" stroke-width="40"/>
zero-polyline-round     <polyline points="100,100 100,100" fill="none" stroke="blue" stroke-width="40" stroke-linecap="round"/>
one-point-polyline      <polyline points="100,100" fill="none" stroke="blue" stroke-width="40" stroke-linecap="round"/>
one-point-polygon       <polygon points="100,100" fill="none" stroke="blue" stroke-width="40" stroke-linecap="round"/>
two-point-polygon       <polygon points="50,100 150,100" fill="red" stroke="blue" stroke-width="20"/>
path-implicit-line      <path d="M20 20 100 30 60 150" fill="red"/>
path-implicit-relative  <path d="m20 20 80 10 -40 120" fill="red"/>
path-relative-after-z   <path d="M20 20h50v50h-50z m80 80h50v50h-50z" fill="red"/>
path-line-after-z       <path d="M20 20h50v50h-50z l120 120 v-40z" fill="red" stroke="blue" stroke-width="6"/>
path-no-separators      <path d="M20,20L100-0L60 150" fill="red"/>
path-signs              <path d="M120 120l-50-50-20+80z" fill="red"/>
path-decimals           <path d="M20.5.5L100.5.5 60 150" fill="red"/>
path-exponent           <path d="M2e1 2e1 L1e2 3E1 6e+1 15e1" fill="red"/>
path-exponent-negative  <path d="M2000e-2 20 L1000E-1 30 60 150" fill="red"/>
path-flags              <path d="M20 100 A50 50 0 0150 50 L150 150z" fill="red"/>
path-flags-all          <path d="M20 100 a50 50 0 01100 0z" fill="red"/>
path-flag-other         <path d="M20 100 A50 50 0 0 2 150 50 L150 150z" fill="red"/>
path-error-middle       <path d="M20 20 L100 30 X 60 150 L20 150 z" fill="red" stroke="blue" stroke-width="4"/>
path-error-number       <path d="M20 20 L100 30 60 abc L20 150 z" fill="red" stroke="blue" stroke-width="4"/>
path-error-missing      <path d="M20 20 L100 30 L60 150 L20 z L5 180" fill="red" stroke="blue" stroke-width="4"/>
path-error-start        <path d="L20 20 L100 30 L60 150" fill="red"/>
path-comma-before       <path d="M20 20, L100 30, L60 150" fill="red" stroke="blue" stroke-width="4"/>
path-comma-after        <path d="M,20 20 L,100 30 L 60 150" fill="red" stroke="blue" stroke-width="4"/>
path-comma-double       <path d="M20,,20 L100,30 L60 150" fill="red" stroke="blue" stroke-width="4"/>
path-comma-last         <path d="M20,20 L100,30 L60,150," fill="red"/>
path-semicolon          <path d="M20 20 L100 30; L60 150 L 10 120" fill="red" stroke="blue" stroke-width="4"/>
path-units              <path d="M20px 20px L100px 30px L60px 150px" fill="red"/>
path-percent            <path d="M10% 10% L50% 20% L30% 80%" fill="red"/>
path-newline            <path d="M20 20
	L100 30
	L60 150" fill="red"/>
path-newline-numbers    <path d="M20
20 L100
30 L60
150" fill="red"/>
path-newline-reference  <path d="M20&#10;20 L100&#10;30&#9;60&#10;150" fill="red"/>
path-number-after-z     <path d="M20 20 L100 30 L60 150z 30 40 L180 180" fill="red"/>
path-h-many             <path d="M20 20 h20 40 60 v20 40 60 z" fill="red" stroke="blue" stroke-width="4"/>
path-only-move          <path d="M20 20 M40 40" fill="red"/>
path-move-many          <path d="M10 10 M20 20 L100 30 L60 150 z" fill="red" stroke="blue" stroke-width="6"/>
path-fill-hole          <path d="M20 20h150v150h-150z M60 60h60v60h-60z" fill="red"/>
path-fill-evenodd       <path d="M20 20h150v150h-150z M60 60h60v60h-60z" fill="red" fill-rule="evenodd"/>
path-clip-rule          <path d="M20 20h150v150h-150z M60 60h60v60h-60z" fill="red" clip-rule="evenodd"/>
path-two-points         <path d="M20 20 Q100 200 180 20" fill="red"/>
path-one-arc            <path d="M30 100 A60 60 0 0 1 150 100" fill="red" stroke="blue" stroke-width="6"/>
path-one-arc-close      <path d="M30 100 A60 60 0 0 1 150 100 z" fill="red" stroke="blue" stroke-width="6"/>
path-two-arcs           <path d="M40 100 A60 60 0 0 1 160 100 A60 60 0 0 1 40 100" fill="red" stroke="blue" stroke-width="6"/>
path-two-moves          <path d="M20 20 L100 30 L60 150 M 180 180" fill="red"/>
path-smooth-cubic       <path d="M20 100 C20 20 80 20 80 100 S150 180 180 100" fill="none" stroke="blue" stroke-width="4"/>
path-smooth-alone       <path d="M20 100 S150 180 180 100 L180 150" fill="none" stroke="blue" stroke-width="4"/>
path-smooth-after-quad  <path d="M20 100 Q40 0 80 100 S150 180 180 100" fill="none" stroke="blue" stroke-width="4"/>
path-quad-after-cubic   <path d="M20 100 C20 20 60 20 80 100 T180 100" fill="none" stroke="blue" stroke-width="4"/>
path-quad-smooth        <path d="M20 100 Q40 0 80 100 T140 100 180 60" fill="none" stroke="blue" stroke-width="4"/>
path-smooth-after-arc   <path d="M20 100 A30 30 0 0 1 80 100 S150 180 180 100" fill="none" stroke="blue" stroke-width="4"/>
path-quad-after-line    <path d="M20 100 L40 0 T140 100 180 60" fill="none" stroke="blue" stroke-width="4"/>
path-relative-curves    <path d="M20 100 c0 -80 60 -80 60 0 s60 80 80 0 q-20 90 -60 60 t-40 10" fill="none" stroke="blue" stroke-width="4"/>
arc-plain               <path d="M30 100 A60 40 0 1 1 150 100 L90 190z" fill="red" stroke="blue" stroke-width="4"/>
arc-rotated             <path d="M30 100 A60 30 30 1 1 150 100 L90 190z" fill="red" stroke="blue" stroke-width="4"/>
arc-rotated-circle      <path d="M30 100 A60 60 30 0 1 150 100 L90 190z" fill="red" stroke="blue" stroke-width="4"/>
arc-rotated-90          <path d="M30 100 A60 30 90 0 1 60 120 L90 190z" fill="red" stroke="blue" stroke-width="4"/>
arc-rotated-180         <path d="M30 100 A60 30 180 1 1 120 110 L90 190z" fill="red" stroke="blue" stroke-width="4"/>
arc-small-radii         <path d="M30 100 A20 10 0 0 1 150 120 L90 190z" fill="red" stroke="blue" stroke-width="4"/>
arc-small-radii-rotated <path d="M30 100 A20 10 40 0 1 150 120 L90 190z" fill="red" stroke="blue" stroke-width="4"/>
arc-small-vertical      <path d="M100 30 A20 10 0 0 1 100 150 L190 90z" fill="red" stroke="blue" stroke-width="4"/>
arc-zero-radius         <path d="M30 100 A0 40 0 0 1 150 120 L90 190z" fill="red" stroke="blue" stroke-width="4"/>
arc-zero-radii          <path d="M30 100 A0 0 0 0 1 150 120 L90 190z" fill="red" stroke="blue" stroke-width="4"/>
arc-negative-radii      <path d="M30 100 A-60 -60 0 0 1 150 120 L90 190z" fill="red" stroke="blue" stroke-width="4"/>
arc-negative-radius     <path d="M30 100 A60 -60 0 0 1 150 120 L90 190z" fill="red" stroke="blue" stroke-width="4"/>
arc-half                <path d="M40 100 A60 60 0 0 0 160 100 L100 20z" fill="red" stroke="blue" stroke-width="4"/>
arc-half-vertical       <path d="M100 40 A60 60 0 0 0 100 160 L20 100z" fill="red" stroke="blue" stroke-width="4"/>
arc-nearly-full         <path d="M100 40 A60 60 0 1 1 99.9 40 z" fill="red" stroke="blue" stroke-width="4"/>
arc-same-point          <path d="M100 40 A60 60 0 1 1 100 40 L160 160 L40 160z" fill="red" stroke="blue" stroke-width="4"/>
arc-flags-00            <path d="M60 60 A50 30 0 0 0 130 90 L30 180z" fill="red"/>
arc-flags-01            <path d="M60 60 A50 30 0 0 1 130 90 L30 180z" fill="red"/>
arc-flags-10            <path d="M60 60 A50 30 0 1 0 130 90 L30 180z" fill="red"/>
arc-flags-11            <path d="M60 60 A50 30 0 1 1 130 90 L30 180z" fill="red"/>
arc-many                <path d="M40 100 A30 30 0 0 1 100 100 30 30 0 0 0 160 100 L100 190z" fill="red"/>
arc-relative-many       <path d="M40 100 a30 30 0 0 1 60 0 30 30 0 0 0 60 0 l-60 90z" fill="red"/>
points-no-comma         <polygon points="20 20 100 30 60 150" fill="red"/>
points-all-commas       <polygon points="20,20,100,30,60,150" fill="red"/>
points-signs            <polygon points="120-0 100-30-60 150" fill="red"/>
points-newlines         <polygon points="20,20
100,30
	60,150" fill="red"/>
points-odd              <polygon points="20,20 100,30 60,150 80" fill="red"/>
points-bad              <polygon points="20,20 100,30 60,150 x,y 10,100" fill="red"/>
points-exponent         <polygon points="2e1,2e1 1e2,3e1 6e1,15e1" fill="red"/>
points-units            <polygon points="20px,20px 100px,30px 60px,150px" fill="red"/>
points-mm               <polygon points="5mm,5mm 20mm,5mm 10mm,30mm" fill="red"/>
points-double-comma     <polygon points="20,,20 100,30 60,150 10 170" fill="red"/>
lengths-px              <rect x="20px" y="20px" width="100px" height="60px" fill="red"/>
lengths-px-upper        <rect x="20PX" y="20PX" width="100PX" height="60PX" fill="red"/>
lengths-percent         <rect x="10%" y="10%" width="50%" height="30%" fill="red"/>
lengths-percent-circle  <circle cx="50%" cy="50%" r="30%" fill="red"/>
lengths-mm              <rect x="5mm" y="5mm" width="40mm" height="30mm" fill="red"/>
lengths-pt              <rect x="20pt" y="20pt" width="100pt" height="60pt" fill="red"/>
lengths-in              <rect x="0.2in" y="0.2in" width="1.5in" height="1in" fill="red"/>
lengths-em              <rect x="1em" y="1em" width="6em" height="5em" fill="red"/>
lengths-blank-unit      <rect x="20" y="20" width="100 px" height="60" fill="red"/>
lengths-blanks          <rect x=" 20 " y=" 20 " width=" 100 " height=" 60 " fill="red"/>
lengths-exponent        <rect x="2e1" y="2e1" width="1e2" height="6e1" fill="red"/>
lengths-plus            <rect x="+20" y="+20" width="+100" height="+60" fill="red"/>
lengths-dot             <rect x=".2e2" y="20." width="100.0" height="60" fill="red"/>
lengths-comma           <rect x="20" y="20" width="100,5" height="60" fill="red"/>
lengths-nan             <rect x="20" y="20" width="nan" height="60" fill="red"/>
lengths-inf             <rect x="20" y="20" width="inf" height="60" fill="red"/>
lengths-hex             <rect x="20" y="20" width="0x50" height="60" fill="red"/>
lengths-calc            <rect x="20" y="20" width="calc(50px + 20px)" height="60" fill="red"/>
lengths-auto            <rect x="20" y="20" width="auto" height="60" fill="red"/>
geometry-in-style       <rect style="x:20px;y:20px;width:100px;height:60px" fill="red"/>
page-mm                 <svg xmlns="http://www.w3.org/2000/svg" width="100mm" height="100mm"><rect x="20" y="20" width="200" height="200" fill="red"/></svg>
page-mm-all             <svg xmlns="http://www.w3.org/2000/svg" width="100mm" height="100mm"><rect x="5mm" y="5mm" width="50mm" height="50mm" fill="red"/></svg>
page-mm-box             <svg xmlns="http://www.w3.org/2000/svg" width="100mm" height="100mm" viewBox="0 0 354.33 354.33"><rect x="20" y="20" width="200" height="200" fill="red"/></svg>
page-mm-box-mm          <svg xmlns="http://www.w3.org/2000/svg" width="100mm" height="100mm" viewBox="0 0 354.33 354.33"><rect x="5mm" y="5mm" width="50mm" height="50mm" fill="red"/></svg>
page-mm-percent         <svg xmlns="http://www.w3.org/2000/svg" width="100mm" height="100mm"><rect x="10%" y="10%" width="50%" height="50%" fill="red"/></svg>
page-no-size            <svg xmlns="http://www.w3.org/2000/svg"><rect x="20" y="20" width="200" height="200" fill="red"/></svg>
page-no-height          <svg xmlns="http://www.w3.org/2000/svg" width="300"><rect x="20" y="20" width="200" height="200" fill="red"/></svg>
page-box-only           <svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 200 200"><rect x="20" y="20" width="100" height="100" fill="red"/></svg>
page-box-origin         <svg xmlns="http://www.w3.org/2000/svg" viewBox="-50 20 200 200"><rect x="20" y="40" width="100" height="100" fill="red"/><path d="M0 50 A40 40 0 0 1 80 50z"/></svg>
page-box-width          <svg xmlns="http://www.w3.org/2000/svg" width="400" viewBox="0 0 200 200"><rect x="20" y="20" width="100" height="100" fill="red"/></svg>
page-box-zero           <svg xmlns="http://www.w3.org/2000/svg" width="200" height="200" viewBox="0 0 0 0"><rect x="20" y="20" width="100" height="100" fill="red"/></svg>
page-box-negative       <svg xmlns="http://www.w3.org/2000/svg" width="200" height="200" viewBox="0 0 -200 -200"><rect x="20" y="20" width="100" height="100" fill="red"/></svg>
page-box-commas         <svg xmlns="http://www.w3.org/2000/svg" width="200" height="200" viewBox="0,0,200,200"><rect x="20" y="20" width="100" height="100" fill="red"/></svg>
page-box-ratio          <svg xmlns="http://www.w3.org/2000/svg" width="200" height="100" viewBox="0 0 200 200"><rect x="20" y="20" width="100" height="100" fill="red"/></svg>
page-box-slice          <svg xmlns="http://www.w3.org/2000/svg" width="200" height="200" viewBox="0 0 200 200" preserveAspectRatio="xMinYMin slice"><rect x="20" y="20" width="100" height="100" fill="red"/></svg>
page-percent            <svg xmlns="http://www.w3.org/2000/svg" width="100%" height="100%" viewBox="0 0 200 200"><rect x="20" y="20" width="100" height="100" fill="red"/></svg>
page-no-namespace       <svg width="200" height="200"><rect x="20" y="20" width="100" height="100" fill="red"/></svg>
page-prefixed           <s:svg xmlns:s="http://www.w3.org/2000/svg" width="200" height="200"><s:rect x="20" y="20" width="100" height="100" fill="red"/></s:svg>
page-two-inside         <svg xmlns="http://www.w3.org/2000/svg" width="200" height="200"><svg width="100" height="100"><rect width="50" height="50" fill="red"/></svg><svg x="100" width="100" height="100"><rect width="50" height="50" fill="blue"/></svg></svg>
page-transform          <svg xmlns="http://www.w3.org/2000/svg" width="200" height="200" transform="rotate(20)"><rect x="40" y="20" width="100" height="100" fill="red"/></svg>
page-opacity            <svg xmlns="http://www.w3.org/2000/svg" width="200" height="200" opacity="0.4"><rect x="40" y="20" width="100" height="100" fill="red"/></svg>
page-fill               <svg xmlns="http://www.w3.org/2000/svg" width="200" height="200" fill="none" stroke="red" stroke-width="10"><rect x="40" y="20" width="100" height="100"/></svg>
page-background         <svg xmlns="http://www.w3.org/2000/svg" width="200" height="200" style="background:yellow"><rect x="40" y="20" width="100" height="100"/></svg>
page-display-none       <svg xmlns="http://www.w3.org/2000/svg" width="200" height="200" display="none"><rect x="40" y="20" width="100" height="100" fill="red"/></svg>
page-hidden             <svg xmlns="http://www.w3.org/2000/svg" width="200" height="200" visibility="hidden"><rect x="40" y="20" width="100" height="100"/></svg>
page-style-sheet        <?xml-stylesheet type="text/css" href="data:text/css,rect%7Bfill:red%7D"?><svg xmlns="http://www.w3.org/2000/svg" width="200" height="200"><rect x="40" y="20" width="100" height="100"/></svg>
page-entity             <!DOCTYPE svg [<!ENTITY c "red"><!ENTITY r '<rect x="40" y="20" width="100" height="100" fill="blue"/>']><svg xmlns="http://www.w3.org/2000/svg" width="200" height="200"><circle cx="100" cy="150" r="40" fill="&c;"/>&r;</svg>
page-attlist            <!DOCTYPE svg [<!ATTLIST rect fill CDATA "red">]><svg xmlns="http://www.w3.org/2000/svg" width="200" height="200"><rect x="40" y="20" width="100" height="100"/></svg>
page-foreign-rect       <svg xmlns="http://www.w3.org/2000/svg" width="200" height="200"><g xmlns="urn:other"><rect x="40" y="20" width="100" height="100"/></g></svg>
page-unset-namespace    <svg xmlns="http://www.w3.org/2000/svg" width="200" height="200"><rect xmlns="" x="40" y="20" width="100" height="100"/></svg>
page-xml-base           <svg xmlns="http://www.w3.org/2000/svg" width="200" height="200" xml:base="http://example.org/"><rect x="40" y="20" width="100" height="100"/></svg>
transform-all           <g transform="translate(100,20) rotate(30) scale(1.2,0.8) skewX(10) skewY(5)"><rect width="60" height="60" fill="red"/></g>
transform-matrix        <rect transform="matrix(1 0.3 -0.2 1 50 20)" width="80" height="60" fill="red"/>
transform-rotate-about  <rect transform="rotate(30 100 100)" x="60" y="60" width="80" height="60" fill="red"/>
transform-rotate-commas <rect transform="rotate(30,100,100)" x="60" y="60" width="80" height="60" fill="red"/>
transform-no-separator  <rect transform="translate(50 20)rotate(30)" width="80" height="60" fill="red"/>
transform-comma         <rect transform="translate(50 20),rotate(30)" width="80" height="60" fill="red"/>
transform-newline       <rect transform="translate(50 20)
	rotate(30)" width="80" height="60" fill="red"/>
transform-blank         <rect transform="translate (50 20) rotate (30)" width="80" height="60" fill="red"/>
transform-blanks-inside <rect transform=" translate( 50 , 20 ) " width="80" height="60" fill="red"/>
transform-upper         <rect transform="Rotate(30)" x="60" width="80" height="60" fill="red"/>
transform-upper-2       <rect transform="Translate(50 20) ROTATE(30)" x="60" width="80" height="60" fill="red"/>
transform-too-many      <rect transform="translate(50 20 30)" width="80" height="60" fill="red"/>
transform-too-many-s    <rect transform="scale(2 2 2)" width="80" height="60" fill="red"/>
transform-too-many-k    <rect transform="skewX(30 20)" width="80" height="60" fill="red"/>
transform-too-few       <rect transform="matrix(2 0 0 2)" width="80" height="60" fill="red"/>
transform-four-rotate   <rect transform="rotate(30 100 100 5)" x="60" y="60" width="80" height="60" fill="red"/>
transform-empty-parens  <rect transform="translate()" width="80" height="60" fill="red"/>
transform-junk          <rect transform="foo translate(50 20)" width="80" height="60" fill="red"/>
transform-junk-behind   <rect transform="translate(50 20) foo" width="80" height="60" fill="red"/>
transform-semicolon     <rect transform="translate(50 20); rotate(30)" width="80" height="60" fill="red"/>
transform-unknown       <rect transform="translate(50 20) turn(30)" width="80" height="60" fill="red"/>
transform-units         <rect transform="translate(50px,20px) rotate(30deg)" width="80" height="60" fill="red"/>
transform-none          <rect transform="none" width="80" height="60" fill="red"/>
transform-signs         <rect transform="translate(50-20)" y="50" width="80" height="60" fill="red"/>
transform-exponent      <rect transform="translate(5e1,2e1)" width="80" height="60" fill="red"/>
transform-double-comma  <rect transform="translate(50,,20)" width="80" height="60" fill="red"/>
transform-in-style      <rect style="transform:translate(50px,20px)" width="80" height="60" fill="red"/>
transform-origin        <rect transform="rotate(30)" transform-origin="100 100" x="60" y="60" width="80" height="60" fill="red"/>
transform-on-use        <defs><rect id="a" width="40" height="40"/></defs><use transform="rotate(20)" xlink:href="#a" x="80" y="20" fill="red"/>
transform-on-image      <image transform="rotate(20)" x="60" y="20" width="80" height="80" xlink:href="$PNG"/>
transform-on-text       <text transform="rotate(20)" x="60" y="50" font-family="Liberation Sans" font-size="40">Abc</text>
transform-on-a          <a transform="rotate(20)"><rect x="60" y="50" width="80" height="60" fill="red"/></a>
transform-on-nested     <svg transform="rotate(20)"><rect x="60" y="50" width="80" height="60" fill="red"/></svg>
transform-on-defs       <defs transform="translate(50 50)"><rect id="a" width="40" height="40"/></defs><use xlink:href="#a" x="80" y="20" fill="red"/>
transform-on-symbol     <symbol id="a" transform="translate(50 50)"><rect width="40" height="40"/></symbol><use xlink:href="#a" x="80" y="20" fill="red"/>
pattern-transform-g     <g patternTransform="translate(50 50)"><rect width="40" height="40" fill="red"/></g>
pattern-transform-use   <defs><rect id="a" width="40" height="40"/></defs><use patternTransform="translate(50 50)" xlink:href="#a" fill="red"/>
colour-rgb              <rect width="100" height="60" fill="rgb(255,128,0)"/>
colour-rgb-percent      <rect width="100" height="60" fill="rgb(100%,50%,0%)"/>
colour-rgb-blanks       <rect width="100" height="60" fill="rgb( 255 , 128 , 0 )"/>
colour-rgb-space        <rect width="100" height="60" fill="rgb(255 128 0)"/>
colour-rgb-alpha        <rect width="100" height="60" fill="rgb(255,128,0,0.2)"/>
colour-rgb-alpha-slash  <rect width="100" height="60" fill="rgb(255 128 0 / 20%)"/>
colour-rgba             <rect width="100" height="60" fill="rgba(255,128,0,0.2)"/>
colour-rgb-upper        <rect width="100" height="60" fill="RGB(255,128,0)"/>
colour-rgb-range        <rect width="100" height="60" fill="rgb(300,-20,0)"/>
colour-rgb-fraction     <rect width="100" height="60" fill="rgb(100.6,20.4,0)"/>
colour-rgb-mixed        <rect width="100" height="60" fill="rgb(100%,128,0)"/>
colour-rgb-open         <rect width="100" height="60" fill="rgb(255,128,0"/>
colour-hex-3            <rect width="100" height="60" fill="#f80"/>
colour-hex-upper        <rect width="100" height="60" fill="#FF8800"/>
colour-hex-4            <rect width="100" height="60" fill="#f804"/>
colour-hex-8            <rect width="100" height="60" fill="#ff880044"/>
colour-hex-5            <rect width="100" height="60" fill="#ff880"/>
colour-hex-none         <rect width="100" height="60" fill="ff8800"/>
colour-name-case        <rect width="100" height="60" fill="ReD"/>
colour-name-blanks      <rect width="100" height="60" fill=" red "/>
colour-name-split       <rect width="100" height="60" fill="r ed"/>
colour-rgbname          <rect width="100" height="60" fill="rgbred"/>
colour-parens           <rect width="100" height="60" fill="(255,0,0)"/>
colour-hsl              <rect width="100" height="60" fill="hsl(30,100%,50%)"/>
colour-transparent      <rect width="100" height="60" fill="transparent"/>
colour-rebeccapurple    <rect width="100" height="60" fill="rebeccapurple"/>
colour-system           <rect width="100" height="60" fill="ButtonFace"/>
colour-unknown          <rect width="100" height="60" fill="reddish"/>
colour-none-upper       <rect width="100" height="60" fill="NONE" stroke="red"/>
colour-current-lower    <g color="red"><rect width="100" height="60" fill="currentcolor"/></g>
colour-none-blanks      <rect width="100" height="60" fill=" none " stroke="red"/>
colour-icc              <rect width="100" height="60" fill="#CD853F icc-color(acmecmyk, 0.11, 0.48, 0.83, 0.00)"/>
colour-important        <rect width="100" height="60" style="fill:red !important"/>
colour-context          <rect width="100" height="60" fill="context-fill"/>
current-colour          <g color="red"><rect width="100" height="60" fill="currentColor"/></g>
current-colour-own      <rect width="100" height="60" color="red" fill="currentColor"/>
current-colour-inherit  <g color="red" fill="currentColor"><rect width="100" height="60" color="blue"/></g>
current-colour-stroke   <g color="red" stroke="currentColor" stroke-width="10"><rect x="20" y="20" width="100" height="60" color="lime"/></g>
current-colour-style    <rect width="100" height="60" style="fill:currentColor;color:red"/>
current-colour-style-2  <rect width="100" height="60" style="color:red;fill:currentColor"/>
current-colour-mixed    <rect width="100" height="60" fill="currentColor" style="color:red"/>
current-colour-late     <g fill="currentColor"><rect width="100" height="60" color="red"/></g>
current-colour-same     <g color="red" fill="currentColor"><rect width="100" height="60"/></g>
opacity-shape           <rect width="100" height="60" fill="red" opacity="0.4"/>
opacity-fill            <rect width="100" height="60" fill="red" fill-opacity="0.4"/>
opacity-both            <rect width="100" height="60" fill="red" fill-opacity="0.5" opacity="0.4"/>
opacity-both-stroke     <rect x="20" y="20" width="100" height="60" fill="none" stroke="red" stroke-width="20" stroke-opacity="0.5" opacity="0.4"/>
opacity-nested          <g fill-opacity="0.5"><rect width="100" height="60" fill="red" fill-opacity="0.5"/></g>
opacity-nested-1        <g fill-opacity="0.5"><rect width="100" height="60" fill="red" fill-opacity="1"/></g>
opacity-nested-groups   <g opacity="0.5"><g opacity="0.5"><rect width="100" height="60" fill="red"/></g></g>
opacity-group-overlap   <g opacity="0.5"><rect width="100" height="60" fill="red"/><rect x="50" y="30" width="100" height="60" fill="blue"/></g>
opacity-group-apart     <g opacity="0.5"><rect width="80" height="60" fill="red"/><rect x="100" y="100" width="50" height="60" fill="blue"/></g>
opacity-group-stroke    <g opacity="0.5"><rect x="20" y="20" width="100" height="60" fill="red" stroke="blue" stroke-width="20"/></g>
opacity-fill-stroke     <rect x="20" y="20" width="100" height="60" fill="red" stroke="blue" stroke-width="30" opacity="0.5"/>
opacity-style-order     <rect width="100" height="60" style="fill:red;opacity:0.4;fill-opacity:0.6"/>
opacity-style-order-2   <rect width="100" height="60" style="fill:red;fill-opacity:0.6;opacity:0.4"/>
opacity-style-1         <rect width="100" height="60" style="fill:red;opacity:0.4;fill-opacity:1"/>
opacity-style-1-first   <rect width="100" height="60" style="fill:red;fill-opacity:1;opacity:0.4"/>
opacity-attr-and-style  <rect width="100" height="60" fill="red" opacity="0.5" style="opacity:0.5"/>
opacity-percent         <rect width="100" height="60" fill="red" opacity="40%"/>
opacity-over            <rect width="100" height="60" fill="red" opacity="1.5"/>
opacity-negative        <rect width="100" height="60" fill="red" opacity="-1"/>
opacity-zero            <rect width="100" height="60" fill="red" opacity="0"/>
opacity-inherit         <g opacity="0.5"><rect width="100" height="60" fill="red" opacity="inherit"/></g>
opacity-image           <image width="100" height="100" opacity="0.3" xlink:href="$PNG"/>
opacity-image-style     <image width="100" height="100" style="opacity:0.3" xlink:href="$PNG"/>
opacity-image-group     <g opacity="0.3"><image width="100" height="100" xlink:href="$PNG"/></g>
opacity-image-fill      <g fill-opacity="0.3"><image width="100" height="100" xlink:href="$PNG"/></g>
opacity-use             <defs><rect id="a" width="40" height="40"/></defs><use xlink:href="#a" x="20" y="20" fill="red" opacity="0.5"/>
opacity-use-fill        <defs><rect id="a" width="40" height="40"/></defs><use xlink:href="#a" x="20" y="20" fill="red" fill-opacity="0.5"/>
opacity-use-own         <defs><rect id="a" width="40" height="40" fill="red" opacity="0.5"/></defs><use xlink:href="#a" x="20" y="20"/>
opacity-text-stroke     <text x="10" y="100" font-family="Liberation Sans" font-size="80" fill="red" stroke="blue" stroke-width="10" opacity="0.5">AB</text>
opacity-stroke-opacity  <rect x="20" y="20" width="100" height="60" fill="red" stroke="blue" stroke-width="30" stroke-opacity="0.5"/>
opacity-path-marker     <defs><marker id="m" markerUnits="userSpaceOnUse" markerWidth="40" markerHeight="40"><rect width="40" height="40"/></marker></defs><path d="M20 50 L100 50 L100 120" fill="none" stroke="black" stroke-width="20" opacity="0.5" marker-mid="url(#m)"/>
hidden-group            <g visibility="hidden"><rect width="100" height="60"/></g>
hidden-child-shown      <g visibility="hidden" fill="red" stroke="blue"><rect width="100" height="60" visibility="visible"/></g>
hidden-painted          <g visibility="hidden"><rect width="100" height="60" fill="red"/></g>
display-none-painted    <g display="none"><rect width="100" height="60" fill="red"/></g>
display-none-self       <rect width="100" height="60" fill="red" display="none"/>
display-none-style      <rect width="100" height="60" fill="red" style="display:none"/>
display-none-line       <line x2="100" y2="100" stroke="red" display="none"/>
display-none-text       <text x="20" y="50" font-family="Liberation Sans" display="none">AB</text>
display-none-image      <g display="none"><image width="100" height="100" xlink:href="$PNG"/></g>
display-none-image-self <image display="none" width="100" height="100" xlink:href="$PNG"/>
hidden-image            <image visibility="hidden" width="100" height="100" xlink:href="$PNG"/>
hidden-image-group      <g visibility="hidden"><image width="100" height="100" xlink:href="$PNG"/></g>
display-none-use        <defs><rect id="a" width="40" height="40"/></defs><use display="none" xlink:href="#a" x="20" y="20"/>
display-none-use-group  <defs><rect id="a" width="40" height="40"/></defs><g display="none"><use xlink:href="#a" x="20" y="20"/></g>
hidden-use-group        <defs><rect id="a" width="40" height="40"/></defs><g visibility="hidden"><use xlink:href="#a" x="20" y="20"/></g>
display-none-nested     <g display="none"><svg><rect width="100" height="60"/></svg></g>
display-none-a          <a display="none"><rect width="100" height="60"/></a>
display-none-defs       <defs display="none"><rect id="a" width="40" height="40"/></defs><use xlink:href="#a" x="20" y="20"/>
display-none-symbol     <symbol id="a" display="none"><rect width="40" height="40"/></symbol><use xlink:href="#a" x="20" y="20"/>
display-none-defined    <defs><rect id="a" width="40" height="40" display="none"/></defs><use xlink:href="#a" x="20" y="20"/>
display-upper           <rect width="100" height="60" display="NONE"/>
display-blanks          <rect width="100" height="60" display=" none "/>
visible-plain           <rect x="20" y="20" width="100" height="60" visibility="visible"/>
use-stroke              <defs><rect id="a" width="40" height="40"/></defs><use xlink:href="#a" x="20" y="20" stroke="blue" stroke-width="10"/>
use-fill-none           <defs><rect id="a" width="40" height="40"/></defs><use xlink:href="#a" x="20" y="20" fill="none" stroke="blue" stroke-width="10"/>
use-own-black           <defs><rect id="a" width="40" height="40" fill="black"/></defs><use xlink:href="#a" x="20" y="20" fill="red"/>
use-own-red             <defs><rect id="a" width="40" height="40" fill="red"/></defs><use xlink:href="#a" x="20" y="20"/>
use-own-stroke          <defs><rect id="a" width="40" height="40" fill="none" stroke="black" stroke-width="10"/></defs><use xlink:href="#a" x="20" y="20"/>
use-own-width-1         <defs><rect id="a" width="40" height="40" fill="none" stroke="black" stroke-width="1"/></defs><use stroke-width="9" xlink:href="#a" x="20" y="20"/>
use-place-inherits      <g fill="red"><defs><rect id="a" width="40" height="40"/></defs><use xlink:href="#a" x="20" y="20"/></g>
use-place-differs       <g fill="none" stroke="red"><defs><rect id="a" width="40" height="40"/></defs><g fill="blue" stroke="none"><use xlink:href="#a" x="20" y="20"/></g></g>
use-group               <defs><g id="a"><rect width="40" height="40"/><circle r="20" cx="80" cy="80"/></g></defs><use xlink:href="#a" x="20" y="20" fill="green"/>
use-nested              <defs><rect id="a" width="40" height="40"/><g id="b"><use xlink:href="#a" x="50"/></g></defs><use xlink:href="#b" x="20" y="20" fill="green"/>
use-size-rect           <defs><rect id="a" width="40" height="40"/></defs><use xlink:href="#a" x="20" y="20" width="80" height="80"/>
use-symbol              <symbol id="a"><rect width="40" height="40" /></symbol><use xlink:href="#a" x="20" y="20" fill="red"/>
use-symbol-box          <symbol id="a" viewBox="0 0 40 40"><rect width="40" height="40"/></symbol><use xlink:href="#a" x="20" y="20" width="80" height="80"/>
use-symbol-box-ratio    <symbol id="a" viewBox="0 0 40 40"><rect width="40" height="40"/></symbol><use xlink:href="#a" x="20" y="20" width="120" height="80"/>
use-symbol-box-no-size  <symbol id="a" viewBox="0 0 40 40"><rect width="40" height="40"/></symbol><use xlink:href="#a" x="20" y="20"/>
use-symbol-box-width    <symbol id="a" viewBox="0 0 40 40"><rect width="40" height="40"/></symbol><use xlink:href="#a" x="20" y="20" width="80"/>
use-symbol-box-origin   <symbol id="a" viewBox="10 10 40 40"><rect x="10" y="10" width="40" height="40"/></symbol><use xlink:href="#a" x="20" y="20" width="80" height="80"/>
use-symbol-clip         <symbol id="a" viewBox="0 0 40 40"><rect x="-10" y="10" width="100" height="20"/></symbol><use xlink:href="#a" x="60" y="60" width="80" height="80"/>
use-symbol-clip-size    <symbol id="a"><rect width="100" height="20"/></symbol><use xlink:href="#a" x="20" y="20" width="50" height="50"/>
use-symbol-stretch      <symbol id="a" viewBox="0 0 40 40" preserveAspectRatio="none"><rect width="40" height="40"/></symbol><use xlink:href="#a" x="20" y="20" width="160" height="80"/>
use-symbol-size         <symbol id="a" width="40" height="40" viewBox="0 0 40 40"><rect width="40" height="40"/></symbol><use xlink:href="#a" x="20" y="20"/>
use-symbol-ref          <symbol id="a" viewBox="0 0 40 40" refX="20" refY="20"><rect width="40" height="40"/></symbol><use xlink:href="#a" x="60" y="60" width="40" height="40"/>
use-nested-svg          <defs><svg id="a" viewBox="0 0 40 40"><rect width="40" height="40"/></svg></defs><use xlink:href="#a" x="20" y="20" width="80" height="80"/>
use-percent             <defs><rect id="a" width="40" height="40"/></defs><use xlink:href="#a" x="20%" y="20%"/>
use-forward             <use xlink:href="#a" x="20" y="20"/><defs><rect id="a" width="40" height="40"/></defs>
use-visible-element     <rect id="a" width="40" height="40"/><use xlink:href="#a" x="60" y="20"/>
use-href                <defs><rect id="a" width="40" height="40"/></defs><use href="#a" x="20" y="20"/>
use-case                <defs><rect id="A" width="40" height="40"/></defs><use xlink:href="#a" x="20" y="20"/>
use-self                <defs><g id="a"><rect width="40" height="40"/><use xlink:href="#a" x="60"/></g></defs><use xlink:href="#a"/>
use-text-font           <defs><text id="a" y="40">Abc</text></defs><use xlink:href="#a" x="20" y="20" font-size="40" font-family="Liberation Serif"/>
use-transformed         <defs><rect id="a" width="40" height="40" transform="rotate(30)"/></defs><use xlink:href="#a" x="60" y="20"/>
use-fill-rule           <defs><path id="a" d="M20 20h150v150h-150z M60 60h60v60h-60z" fill-rule="evenodd"/></defs><use xlink:href="#a"/>
use-image               <defs><image id="a" width="40" height="40" xlink:href="$PNG"/></defs><use xlink:href="#a" x="20" y="20"/>
symbol-drawn            <symbol><rect width="40" height="40"/></symbol>
nested-plain            <svg x="20" y="20" width="100" height="100"><rect width="50" height="50" fill="red"/></svg>
nested-box              <svg x="20" y="20" width="100" height="100" viewBox="0 0 50 50"><rect width="25" height="25" fill="red"/></svg>
nested-box-ratio        <svg x="20" y="20" width="150" height="100" viewBox="0 0 50 50"><rect width="25" height="25" fill="red"/></svg>
nested-box-none         <svg x="20" y="20" width="150" height="100" viewBox="0 0 50 50" preserveAspectRatio="none"><rect width="25" height="25" fill="red"/></svg>
nested-box-slice        <svg x="20" y="20" width="150" height="100" viewBox="0 0 50 50" preserveAspectRatio="xMidYMid slice"><rect width="25" height="25" fill="red"/></svg>
nested-box-min          <svg x="20" y="20" width="150" height="100" viewBox="0 0 50 50" preserveAspectRatio="xMinYMin"><rect width="25" height="25" fill="red"/></svg>
nested-box-min-square   <svg x="20" y="20" width="100" height="100" viewBox="0 0 50 50" preserveAspectRatio="xMinYMin"><rect width="25" height="25" fill="red"/></svg>
nested-box-only         <svg viewBox="0 0 50 50"><rect width="25" height="25" fill="red"/></svg>
nested-clip             <svg x="20" y="20" width="100" height="100"><rect width="150" height="50" fill="red"/></svg>
nested-clip-circle      <svg x="20" y="20" width="100" height="100"><circle r="50" fill="red"/></svg>
nested-clip-path        <svg x="20" y="20" width="100" height="100"><path d="M10 10 L150 20 L30 90z" fill="red"/></svg>
nested-clip-transform   <svg x="20" y="20" width="100" height="100"><g transform="translate(50 0)"><rect width="90" height="50" fill="red"/></g></svg>
nested-clip-stroke      <svg x="20" y="20" width="100" height="100"><rect width="100" height="100" fill="red" stroke="blue" stroke-width="30"/></svg>
nested-clip-text        <svg x="20" y="20" width="50" height="50"><text y="40" font-family="Liberation Sans" font-size="40">Long text</text></svg>
nested-visible          <svg x="20" y="20" width="100" height="100" overflow="visible"><rect width="150" height="50" fill="red"/></svg>
nested-zero             <svg x="20" y="20" width="0" height="100"><rect width="50" height="50" fill="red"/></svg>
nested-percent          <svg x="20" y="20" width="50%" height="50%"><rect width="50" height="50" fill="red"/></svg>
nested-percent-inside   <svg x="20" y="20" width="100" height="100"><rect width="50%" height="50%" fill="red"/></svg>
nested-no-size          <svg x="20" y="20"><rect width="50" height="50" fill="red"/></svg>
nested-negative         <svg x="20" y="20" width="-10" height="100"><rect width="50" height="50" fill="red"/></svg>
nested-stretched-box    <svg x="20" y="20" width="100" height="50" viewBox="0 0 100 100"><rect x="-40" width="180" height="100" fill="red"/></svg>
image-plain             <image x="20" y="20" width="100" height="100" xlink:href="$PNG"/>
image-ratio             <image x="20" y="20" width="150" height="100" xlink:href="$PNG"/>
image-ratio-none        <image x="20" y="20" width="150" height="100" preserveAspectRatio="none" xlink:href="$PNG"/>
image-no-size           <image x="20" y="20" xlink:href="$PNG"/>
image-slice             <image x="20" y="20" width="100" height="100" preserveAspectRatio="xMinYMin slice" xlink:href="$PNG"/>
image-negative          <image x="20" y="20" width="-100" height="100" xlink:href="$PNG"/>
image-pixelated         <image x="20" y="20" width="100" height="100" image-rendering="optimizeSpeed" xlink:href="$PNG"/>
marker-units-default    <defs><marker id="m" markerWidth="10" markerHeight="10"><rect width="10" height="10"/></marker></defs><line x1="50" y1="50" x2="150" y2="50" stroke="black" stroke-width="4" marker-start="url(#m)"/>
marker-units-width-1    <defs><marker id="m" markerWidth="30" markerHeight="30"><rect width="30" height="30"/></marker></defs><line x1="50" y1="50" x2="150" y2="50" stroke="black" stroke-width="1" marker-start="url(#m)"/>
marker-user-space       <defs><marker id="m" markerUnits="userSpaceOnUse" markerWidth="30" markerHeight="30"><rect width="30" height="30"/></marker></defs><line x1="50" y1="50" x2="150" y2="50" stroke="black" stroke-width="4" marker-start="url(#m)"/>
marker-default-size     <defs><marker id="m"><circle r="3"/></marker></defs><line x1="50" y1="50" x2="150" y2="50" stroke="black" stroke-width="4" marker-start="url(#m)"/>
marker-view-box         <defs><marker id="m" viewBox="0 0 10 10" refX="5" refY="5" markerWidth="6" markerHeight="6"><path d="M0 0L10 5 0 10z"/></marker></defs><line x1="50" y1="50" x2="150" y2="50" stroke="black" stroke-width="4" marker-end="url(#m)"/>
marker-orient           <defs><marker id="m" orient="auto" markerUnits="userSpaceOnUse" markerWidth="30" markerHeight="30"><path d="M0 0L30 15 0 30z"/></marker></defs><line x1="50" y1="50" x2="150" y2="150" stroke="black" stroke-width="4" marker-end="url(#m)"/>
marker-polygon          <defs><marker id="m" markerUnits="userSpaceOnUse" markerWidth="30" markerHeight="30"><rect width="30" height="30"/></marker></defs><polygon points="50,50 150,50 100,150" fill="red" stroke="black" marker-end="url(#m)"/>
marker-polygon-mid      <defs><marker id="m" markerUnits="userSpaceOnUse" markerWidth="30" markerHeight="30"><rect width="30" height="30"/></marker></defs><polygon points="50,50 150,50 100,150" fill="red" stroke="black" marker-mid="url(#m)"/>
marker-shorthand        <defs><marker id="m" markerUnits="userSpaceOnUse" markerWidth="30" markerHeight="30"><rect width="30" height="30"/></marker></defs><polyline points="50,50 150,50 100,150" fill="none" stroke="black" marker="url(#m)"/>
marker-group            <defs><marker id="m" markerUnits="userSpaceOnUse" markerWidth="30" markerHeight="30"><rect width="30" height="30"/></marker></defs><g marker-end="url(#m)"><polyline points="50,50 150,50 100,150" fill="none" stroke="black"/></g>
marker-no-stroke        <defs><marker id="m" markerUnits="userSpaceOnUse" markerWidth="30" markerHeight="30"><rect width="30" height="30"/></marker></defs><path d="M50,50 150,50 100,150 z" fill="red" marker-end="url(#m)"/>
marker-clip             <defs><marker id="m" markerUnits="userSpaceOnUse" markerWidth="30" markerHeight="30"><circle r="30"/></marker></defs><line x1="50" y1="50" x2="150" y2="50" stroke="black" marker-end="url(#m)"/>
marker-ref              <defs><marker id="m" markerUnits="userSpaceOnUse" markerWidth="30" markerHeight="30" refX="15" refY="15"><rect width="30" height="30"/></marker></defs><line x1="50" y1="50" x2="150" y2="50" stroke="black" marker-end="url(#m)"/>
marker-on-rect          <defs><marker id="m" markerUnits="userSpaceOnUse" markerWidth="30" markerHeight="30"><rect width="30" height="30"/></marker></defs><rect x="50" y="50" width="90" height="90" fill="none" stroke="black" marker-end="url(#m)"/>
marker-path-curve-mid   <defs><marker id="m" markerUnits="userSpaceOnUse" markerWidth="20" markerHeight="20"><rect width="20" height="20"/></marker></defs><path d="M20 150 C20 20 100 20 100 100 L180 100 180 150" fill="none" stroke="black" marker-mid="url(#m)"/>
marker-path-moves       <defs><marker id="m" markerUnits="userSpaceOnUse" markerWidth="20" markerHeight="20"><rect width="20" height="20"/></marker></defs><path d="M20 20 L100 20 z M50 80 L150 80 150 150 z" fill="none" stroke="black" marker-mid="url(#m)"/>
marker-hidden-line      <defs><marker id="m" markerUnits="userSpaceOnUse" markerWidth="30" markerHeight="30"><rect width="30" height="30"/></marker></defs><g display="none"><polygon points="50,50 150,50 100,150" marker-end="url(#m)"/></g>
marker-own-colour       <defs><marker id="m" markerUnits="userSpaceOnUse" markerWidth="30" markerHeight="30"><rect width="30" height="30" fill="red"/></marker></defs><line x1="50" y1="50" x2="150" y2="50" stroke="black" marker-end="url(#m)"/>
marker-inherits-line    <defs><marker id="m" markerUnits="userSpaceOnUse" markerWidth="30" markerHeight="30"><rect width="30" height="30"/></marker></defs><polyline points="50,50 150,50 100,150" fill="none" stroke="blue" stroke-width="5" marker-end="url(#m)"/>
pattern-image           <defs><pattern id="p" patternUnits="userSpaceOnUse" width="16" height="16"><image width="16" height="16" xlink:href="$PNG"/></pattern></defs><rect width="160" height="96" fill="url(#p)"/>
pattern-image-box       <defs><pattern id="p" width="16" height="16"><image width="16" height="16" xlink:href="$PNG"/></pattern></defs><rect width="160" height="96" fill="url(#p)"/>
pattern-image-bbox      <defs><pattern id="p" width="0.25" height="0.25"><image width="16" height="16" xlink:href="$PNG"/></pattern></defs><rect width="160" height="96" fill="url(#p)"/>
pattern-image-offset    <defs><pattern id="p" patternUnits="userSpaceOnUse" width="16" height="16"><image width="16" height="16" xlink:href="$PNG"/></pattern></defs><rect x="5" y="5" width="160" height="96" fill="url(#p)"/>
pattern-image-moved     <defs><pattern id="p" patternUnits="userSpaceOnUse" width="16" height="16"><image width="16" height="16" xlink:href="$PNG"/></pattern></defs><rect transform="translate(7 7) scale(2)" width="60" height="60" fill="url(#p)"/>
pattern-image-large     <defs><pattern id="p" patternUnits="userSpaceOnUse" width="40" height="40"><image width="40" height="40" xlink:href="$PNG"/></pattern></defs><rect width="160" height="96" fill="url(#p)"/>
pattern-image-inner     <defs><pattern id="p" patternUnits="userSpaceOnUse" width="16" height="16"><image x="4" y="4" width="8" height="8" xlink:href="$PNG"/></pattern></defs><rect width="160" height="96" fill="url(#p)"/>
pattern-image-xy        <defs><pattern id="p" patternUnits="userSpaceOnUse" x="5" y="5" width="16" height="16"><image width="16" height="16" xlink:href="$PNG"/></pattern></defs><rect width="160" height="96" fill="url(#p)"/>
pattern-shapes          <defs><pattern id="p" patternUnits="userSpaceOnUse" width="20" height="20"><rect width="10" height="10" fill="red"/></pattern></defs><rect width="160" height="96" fill="url(#p)"/>
pattern-opacity         <defs><pattern id="p" patternUnits="userSpaceOnUse" width="16" height="16"><image width="16" height="16" xlink:href="$PNG"/></pattern></defs><rect width="160" height="96" fill="url(#p)" fill-opacity="0.4"/>
pattern-group           <defs><pattern id="p" patternUnits="userSpaceOnUse" width="16" height="16"><image width="16" height="16" xlink:href="$PNG"/></pattern></defs><g fill="url(#p)"><rect width="160" height="96"/></g>
pattern-then-colour     <defs><pattern id="p" patternUnits="userSpaceOnUse" width="16" height="16"><image width="16" height="16" xlink:href="$PNG"/></pattern></defs><g fill="url(#p)"><rect width="160" height="96" fill="red"/></g>
pattern-mixed           <defs><pattern id="p" patternUnits="userSpaceOnUse" width="16" height="16"><image width="16" height="16" xlink:href="$PNG"/><rect width="8" height="8" fill="lime"/></pattern></defs><rect width="160" height="96" fill="url(#p)"/>
pattern-text            <defs><pattern id="p" patternUnits="userSpaceOnUse" width="16" height="16"><image width="16" height="16" xlink:href="$PNG"/></pattern></defs><text x="10" y="100" font-family="Liberation Sans" font-size="80" fill="url(#p)">AB</text>
gradient-fill           <defs><linearGradient id="g"><stop stop-color="red"/><stop offset="1" stop-color="blue"/></linearGradient></defs><rect width="160" height="96" fill="url(#g)"/>
gradient-behind         <rect width="160" height="96" fill="url(#g)"/><defs><linearGradient id="g"><stop stop-color="red"/><stop offset="1" stop-color="blue"/></linearGradient></defs>
paint-missing           <rect width="160" height="96" fill="url(#nope)" stroke="red"/>
paint-fallback          <rect width="160" height="96" fill="url(#nope) lime"/>
text-blanks             <text x="10" y="60" font-family="Liberation Sans" font-size="20">One     two</text>
text-blanks-ends        <text x="10" y="60" font-family="Liberation Sans" font-size="20">   One two   </text>
text-blanks-preserve    <text x="10" y="60" font-family="Liberation Sans" font-size="20" xml:space="preserve">One     two</text>
text-preserve-front     <text x="10" y="60" font-family="Liberation Sans" font-size="20" xml:space="preserve">     One two</text>
text-preserve-group     <g xml:space="preserve"><text x="10" y="60" font-family="Liberation Sans" font-size="20">     One two</text></g>
text-preserve-end       <text x="190" y="60" font-family="Liberation Sans" font-size="20" text-anchor="end" xml:space="preserve">One two     </text>
text-preserve-newline   <text x="10" y="60" font-family="Liberation Sans" font-size="20" xml:space="preserve">One
two</text>
text-white-space-pre    <text x="10" y="60" font-family="Liberation Sans" font-size="20" style="white-space:pre">One     two</text>
text-newline            <text x="10" y="60" font-family="Liberation Sans" font-size="20">One
two</text>
text-newline-blank      <text x="10" y="60" font-family="Liberation Sans" font-size="20">One
  two</text>
text-newline-one-blank  <text x="10" y="60" font-family="Liberation Sans" font-size="20">One
 two</text>
text-tab                <text x="10" y="60" font-family="Liberation Sans" font-size="20">One	two</text>
text-nbsp               <text x="10" y="60" font-family="Liberation Sans" font-size="20">One&#160;&#160;&#160;two</text>
text-tspan              <text x="10" y="60" font-family="Liberation Sans" font-size="20">One <tspan fill="red">two</tspan> three</text>
text-anchor-middle      <text x="100" y="60" font-family="Liberation Sans" font-size="20" text-anchor="middle">One two</text>
text-anchor-end         <text x="190" y="60" font-family="Liberation Sans" font-size="20" text-anchor="end">One two</text>
text-anchor-style       <text x="190" y="60" font-family="Liberation Sans" font-size="20" style="text-anchor:end">One two</text>
text-anchor-both        <text x="100" y="60" font-family="Liberation Sans" font-size="20" text-anchor="start" style="text-anchor:end">One two</text>
text-size-both          <text x="10" y="60" font-family="Liberation Sans" font-size="20" style="font-size:40px">One two</text>
text-weight-both        <text x="10" y="60" font-family="Liberation Sans" font-size="20" font-weight="normal" style="font-weight:bold">One two</text>
text-family-both        <text x="10" y="60" font-family="Liberation Sans" font-size="20" style="font-family:Liberation Serif">One two</text>
text-size-both-group    <g font-size="20" font-family="Liberation Sans" style="font-size:40px"><text x="10" y="60">One two</text></g>
text-no-family          <text x="10" y="60" font-size="30">One two</text>
text-no-family-use      <symbol id="a"><text y="40" font-size="30">Abc</text></symbol><use xlink:href="#a" x="20" y="20" font-size="30"/>
text-no-size            <text x="10" y="60" font-family="Liberation Sans">One two</text>
text-size-pt            <text x="10" y="60" font-family="Liberation Sans" font-size="20pt">One two</text>
text-size-px            <text x="10" y="60" font-family="Liberation Sans" font-size="20px">One two</text>
text-size-em            <g font-size="10" font-family="Liberation Sans"><text x="10" y="60" font-size="3em">One two</text></g>
text-size-percent       <g font-size="10" font-family="Liberation Sans"><text x="10" y="60" font-size="200%">One two</text></g>
text-size-word          <text x="10" y="60" font-family="Liberation Sans" font-size="large">One two</text>
text-size-larger        <g font-size="20" font-family="Liberation Sans"><text x="10" y="60" font-size="larger">One two</text></g>
text-size-zero          <text x="10" y="60" font-family="Liberation Sans" font-size="0">One two</text>
text-size-negative      <text x="10" y="60" font-family="Liberation Sans" font-size="-20">One two</text>
text-weight-bold        <text x="10" y="60" font-family="Liberation Sans" font-size="30" font-weight="bold">One two</text>
text-weight-bolder      <text x="10" y="60" font-family="Liberation Sans" font-size="30" font-weight="bolder">One two</text>
text-weight-lighter     <g font-weight="bold"><text x="10" y="60" font-family="Liberation Sans" font-size="30" font-weight="lighter">One two</text></g>
text-weight-600         <text x="10" y="60" font-family="Liberation Sans" font-size="30" font-weight="600">One two</text>
text-weight-500         <text x="10" y="60" font-family="Liberation Sans" font-size="30" font-weight="500">One two</text>
text-weight-650         <text x="10" y="60" font-family="Liberation Sans" font-size="30" font-weight="650">One two</text>
text-italic             <text x="10" y="60" font-family="Liberation Sans" font-size="30" font-style="italic">One two</text>
text-italic-group       <g font-style="italic"><text x="10" y="60" font-family="Liberation Sans" font-size="30">One two</text></g>
text-underline          <text x="10" y="60" font-family="Liberation Sans" font-size="30" text-decoration="underline">One two</text>
text-small-caps         <text x="10" y="60" font-family="Liberation Sans" font-size="30" font-variant="small-caps">One two</text>
text-font-shorthand     <text x="10" y="60" style="font:bold 30px sans-serif">One two</text>
text-letter-spacing     <text x="10" y="60" font-family="Liberation Sans" font-size="20" letter-spacing="5">One two</text>
text-letter-spacing-mid <text x="100" y="60" font-family="Liberation Sans" font-size="20" text-anchor="middle" letter-spacing="10">One</text>
text-letter-spacing-em  <text x="10" y="60" font-family="Liberation Sans" font-size="20" letter-spacing="0.3em">One two</text>
text-word-spacing       <text x="10" y="60" font-family="Liberation Sans" font-size="20" word-spacing="20">One two</text>
text-baseline-shift     <text x="10" y="60" font-family="Liberation Sans" font-size="20" baseline-shift="10">One two</text>
text-dominant           <text x="10" y="60" font-family="Liberation Sans" font-size="40" dominant-baseline="hanging">One two</text>
text-alignment          <text x="10" y="60" font-family="Liberation Sans" font-size="40" alignment-baseline="middle">One two</text>
text-dx                 <text x="10" dx="30" y="60" font-family="Liberation Sans" font-size="20">One two</text>
text-dy                 <text x="10" dy="30" y="60" font-family="Liberation Sans" font-size="20">One two</text>
text-dx-list            <text x="10" dx="30 10 10" y="60" font-family="Liberation Sans" font-size="20">One two</text>
text-x-list             <text x="10 40 70" y="60" font-family="Liberation Sans" font-size="20">One two</text>
text-y-list             <text x="10" y="60 70 80" font-family="Liberation Sans" font-size="20">One two</text>
text-dy-list            <text x="10" y="60" dy="0 10 10" font-family="Liberation Sans" font-size="20">One two</text>
text-rotate             <text x="10" y="60" rotate="30" font-family="Liberation Sans" font-size="20">One two</text>
text-length             <text x="10" y="60" textLength="180" font-family="Liberation Sans" font-size="20">One two</text>
text-view-box           <text x="10" y="60" viewBox="0 0 50 100" font-family="Liberation Sans" font-size="20">One two three</text>
text-writing-tb         <text x="50" y="20" writing-mode="tb" font-family="Liberation Sans" font-size="20">One two</text>
text-writing-vertical   <text x="50" y="20" style="writing-mode:vertical-rl" font-family="Liberation Sans" font-size="20">One two</text>
text-writing-rl         <text x="150" y="50" writing-mode="rl" font-family="Liberation Sans" font-size="20">One two</text>
text-writing-rl-middle  <text x="100" y="50" writing-mode="rl" text-anchor="middle" font-family="Liberation Sans" font-size="20">One two</text>
text-writing-no-text    <g writing-mode="tb"><rect width="50" height="50" fill="red"/></g>
text-writing-tb-group   <g writing-mode="tb" font-family="Liberation Sans"><text x="50" y="20" font-size="20">One two</text></g>
text-writing-lr         <text x="50" y="50" writing-mode="lr" font-family="Liberation Sans" font-size="20">One two</text>
text-direction          <text x="150" y="50" direction="rtl" font-family="Liberation Sans" font-size="20">One two</text>
text-stroke-only        <text x="10" y="60" fill="none" stroke="red" font-family="Liberation Sans" font-size="40">One two</text>
text-fill-none          <text x="10" y="60" fill="none" font-family="Liberation Sans" font-size="40">One two</text>
text-empty              <text x="10" y="60" font-family="Liberation Sans" font-size="40"></text>
text-in-link            <a xlink:href="http://example.org/"><text x="10" y="60" font-family="Liberation Sans" font-size="40">One two</text></a>
text-cdata              <text x="10" y="60" font-family="Liberation Sans" font-size="40"><![CDATA[a<b]]></text>
text-comment            <text x="10" y="60" font-family="Liberation Sans" font-size="40">One <!-- two --> three</text>
text-percent            <text x="20%" y="50%" font-family="Liberation Sans" font-size="40">One</text>
text-unknown-family     <text x="10" y="60" font-family="Nothing Such" font-size="40">One</text>
text-quoted-family      <text x="10" y="60" font-family="'Liberation Serif', serif" font-size="40">One</text>
text-in-symbol          <symbol id="a"><text y="40" font-family="Liberation Serif" font-size="40">Abc</text></symbol><use xlink:href="#a" x="20" y="20"/>
text-switch             <switch><text x="10" y="60" systemLanguage="de" font-family="Liberation Sans" font-size="40">Eins</text><text x="10" y="60" font-family="Liberation Sans" font-size="40">One</text></switch>
text-system-language    <text x="10" y="60" systemLanguage="de" font-family="Liberation Sans" font-size="40">Eins</text>
text-required           <rect width="50" height="50" requiredExtensions="http://example.org/x"/>
text-ligature           <text x="10" y="60" font-family="Liberation Serif" font-size="40">office AVA</text>
text-arabic             <text x="150" y="60" font-family="DejaVu Sans" font-size="30">&#x627;&#x644;&#x639;</text>
text-display-inline     <text x="10" y="60" display="inline" font-family="Liberation Sans" font-size="40">One</text>
style-plain             <rect width="100" height="60" style="fill:red;stroke:blue;stroke-width:10"/>
style-newline           <rect width="100" height="60" style="fill:red;
  stroke:blue;
  stroke-width:10"/>
style-tab               <rect width="100" height="60" style="fill:red;&#9;stroke:blue;&#10;stroke-width:10"/>
style-upper             <rect width="100" height="60" style="FILL:red"/>
style-comment           <rect width="100" height="60" style="/* a */ fill:red"/>
style-comment-middle    <rect width="100" height="60" style="fill:red; /* b */ stroke:blue"/>
style-double            <rect width="100" height="60" style="fill:red;;stroke:blue"/>
style-leading           <rect width="100" height="60" style=";fill:red"/>
style-no-colon          <rect width="100" height="60" style="fill red; stroke:blue"/>
style-twice             <rect width="100" height="60" style="fill:red;fill:lime"/>
style-wins              <rect width="100" height="60" fill="blue" style="fill:red"/>
style-empty-value       <g fill="red"><rect width="100" height="60" style="fill:"/></g>
style-important         <rect width="100" height="60" style="fill:red !important;fill:lime"/>
style-vendor            <rect width="100" height="60" style="-inkscape-font:x;fill:red"/>
style-sheet             <style>rect { fill: red }</style><rect width="100" height="60"/>
style-sheet-class       <style type="text/css"><![CDATA[.a { fill: red }]]></style><rect class="a" width="100" height="60"/>
style-url-semicolon     <rect width="100" height="60" style="fill:red;cursor:url(data:image/png;base64,AA);stroke:blue"/>
number-point            <rect width="100." height="60" fill="red"/>
number-point-opacity    <rect width="100" height="60" fill="red" opacity="0."/>
number-point-points     <polygon points="20.,20. 150.,20. 20.,150." fill="red"/>
number-point-path       <path d="M20. 20.L150. 20.L20. 150.z" fill="red"/>
number-point-transform  <rect transform="translate(50.)" width="100" height="60" fill="red"/>
names-upper             <Rect width="100" height="60"/>
names-attribute-upper   <rect Width="100" height="60"/>
names-keyword-upper     <line x1="50" y1="50" x2="150" y2="50" stroke="blue" stroke-width="30" stroke-linecap="ROUND"/>
names-keyword-blanks    <line x1="50" y1="50" x2="150" y2="50" stroke="blue" stroke-width="30" stroke-linecap=" round "/>
names-fill-rule-upper   <path d="M20 20h150v150h-150z M60 60h60v60h-60z" fill-rule="EvenOdd"/>
round-rect              <rect x="20" y="20" width="150" height="100" rx="20" fill="red"/>
round-rect-style        <rect x="20" y="20" width="150" height="100" style="rx:20px" fill="red"/>
clip-path               <clipPath id="c"><circle r="50" cx="50" cy="50"/></clipPath><rect width="100" height="100" clip-path="url(#c)"/>
mask                    <mask id="c"><circle r="50" cx="50" cy="50" fill="white"/></mask><rect width="100" height="100" style="mask:url(#c)"/>
filter                  <filter id="f"><feGaussianBlur stdDeviation="9"/></filter><rect x="30" y="30" width="100" height="100" filter="url(#f)"/>
switch-shapes           <switch><rect width="100" height="100"/></switch>
foreign-object          <foreignObject width="100" height="100"><p xmlns="http://www.w3.org/1999/xhtml">Hello</p></foreignObject>
polyline-filled         <polyline points="20,20 100,30 60,150" fill="red"/>
line-no-stroke          <line x1="20" y1="30" x2="150" y2="120"/>
path-no-paint           <path d="M20 20 L100 30 L60 150z" fill="none"/>
line-in-filled-group    <g fill="red"><line x1="20" y1="30" x2="150" y2="120"/></g>
blend-mode              <rect width="100" height="100" fill="red"/><rect x="50" y="50" width="100" height="100" fill="lime" style="mix-blend-mode:multiply"/>
shape-rendering         <circle cx="100" cy="100" r="60" shape-rendering="crispEdges"/>
path-length             <path d="M20 100 L180 100" stroke="red" stroke-width="9" pathLength="10" stroke-dasharray="1 1"/>
overlong-page           <rect x="-50" y="-50" width="500" height="500" fill="red"/>
overflow-on-group       <g overflow="hidden"><rect width="100" height="100" fill="red"/></g>
title-and-desc          <title>T</title><desc>D</desc><g><title>g</title><rect width="100" height="100" fill="red"/></g>
metadata                <metadata><x xmlns="urn:x">a</x></metadata><rect width="100" height="100" fill="red"/>
include-fallback        <xi:include xmlns:xi="http://www.w3.org/2001/XInclude" href="none.svg"><xi:fallback><rect width="100" height="100" fill="red"/></xi:fallback></xi:include>
animation               <rect width="100" height="100" fill="red"><animate attributeName="fill" to="blue" dur="3s"/></rect>
script                  <script>var a</script><rect width="100" height="100" fill="red" onclick="x()"/>
duplicate-id            <rect id="a" width="50" height="50"/><rect id="a" x="60" width="50" height="50"/>
unused-filter           <filter id="f"><feGaussianBlur stdDeviation="9"/></filter><rect x="30" y="30" width="100" height="100"/>
unused-gradient         <defs><linearGradient id="g"><stop stop-color="red"/></linearGradient></defs><rect x="30" y="30" width="100" height="100"/>
deep-transform          <g transform="translate(10 10)"><g transform="rotate(10)"><g transform="scale(0.5)"><rect width="200" height="200" fill="red" stroke="blue" stroke-width="20"/></g></g></g>
inverted-scale          <g transform="translate(0 200) scale(1 -1)"><path d="M20 20 A60 30 20 0 1 120 80 L60 180z" fill="red"/></g>
"""


def png(width, height):
    """Returns an image of four coloured quarters, as a data URL."""
    import base64
    import struct
    import zlib

    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    rows = b"".join(b"\0" + b"".join(bytes((200 * (x < width / 2), 150 * (y < height / 2), 90)) for x in range(width))
                    for y in range(height))
    data = (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)) +
            chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b""))
    return "data:image/png;base64," + base64.b64encode(data).decode()


def drawings():
    rows = []
    for line in DRAWINGS.strip("\n").split("\n"):
        name, blank, content = line.partition(" ")
        if blank and name and name[0].islower() and all(c.islower() or c.isdigit() or c == "-" for c in name) \
                and content.startswith(" ") and content.lstrip().startswith("<"):
            rows.append([name, content.lstrip()])
        else:
            rows[-1][1] += "\n" + line  # content continues on the next line
    return rows


def document_of(content):
    if content.startswith(("<svg", "<s:svg", "<?", "<!")):
        return content
    return ('<svg xmlns="http://www.w3.org/2000/svg" xmlns:xlink="http://www.w3.org/1999/xlink" '
            f'width="200" height="200">{content}</svg>')


def main():
    folder = Path(sys.argv[1])
    folder.mkdir(parents=True, exist_ok=True)
    for name, content in drawings():
        (folder / f"{name}.svg").write_text(document_of(content.replace("$PNG", png(16, 16))))


if __name__ == "__main__":
    main()
