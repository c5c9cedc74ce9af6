# SPDX-License-Identifier: Apache-2.0

# Bash completion for the command orvprint.

_orvprint() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    COMPREPLY=()

    # Bash splits "--option=value" into three words.
    if [ "$current" = = ]; then
        current=
    elif [ "$previous" = = ] && ((COMP_CWORD > 1)); then
        previous=${COMP_WORDS[COMP_CWORD - 2]}
    fi

    local reading="--interpreter --language --font-size --parser --fragment --allow-dir --no-file-images --limit --max-primitives --time-limit
        --no-sandbox --require-sandbox --help"
    local elements="--qvxml --detect-qvxml --keep-going"
    local sheets="--paper --orientation --scale --margin --align --tile --overlap --nup
        --grey --gray --mono --stroke-scale --min-stroke"
    local command=print options
    case ${COMP_WORDS[1]} in
        info | inspect | check | report | serve | formats | limits | printers) if ((COMP_CWORD > 1)); then command=${COMP_WORDS[1]}; fi ;;
    esac
    case $command in
        print) options="--printer --copies --title --wait --output --force --via --format --pages --dpi --width --height --zoom --background --export-id --flatten-dpi --out-dir --files-from --null --keep-folders --jobs --shard --report --resume --retry --quiet --strict --ignore --version
            $reading $elements $sheets -o -f -j -d -n -t -h" ;;
        info) options="--json $reading $elements -h" ;;
        inspect) options="--json --html $reading -h" ;;
        check) options="--json --verbose --ignore --qvxml $reading -h" ;;
        report) options="--json --merged --html --help -h" ;;
        serve) options="--socket --listen --allow-remote --workers -j --queue --max-request --max-connections --patience --jobs-per-worker
            --quiet --interpreter --language --font-size --parser --limit --max-primitives --time-limit --no-sandbox
            --require-sandbox --help -h" ;;
        formats | limits | printers) options="--help -h" ;;
    esac

    case $previous in
        -f | --format) _orvprint_words "pdf ps eps svg png tiff pwg urf" ;;
        --limit) _orvprint_words "input-bytes= unpacked-bytes= unpacked-growth= element-depth= entity-growth= \
            primitives= duplicates= visits= path-points= dashes= image-pixels= document-pixels= drawn= \
            repeats= pages= page-pixels= output-pixels= output-bytes= painted-pixels= memory=" ;;
        --ignore) _orvprint_words "unknown-element prefixed-element misplaced-element not-on-a-page page-set foreign-namespace \
            gradient clip-path mask filter style-sheet script animation text-span switch foreign-object \
            svg-font unprinted-element href-without-prefix prefixed-attribute missing-reference \
            unreachable-reference bad-reference duplicate-id script-link image-missing image-refused \
            image-remote image-format image-broken image-colours image-not-turned image-stretched \
            unknown-attribute attribute-without-effect ignored-property unknown-property \
            attribute-only-property lost-declarations broken-declaration bad-colour bad-length \
            unknown-unit bad-value bad-transform bad-view-box bad-points bad-path-data opacity-range \
            view-box-not-scaled page-without-size unit-scale percentage-of-nothing \
            percentage-in-nested-svg square-corners shape-size zero-length joined-ends arc-shape \
            smooth-control always-stroked polyline-not-filled path-not-filled hidden-but-printed \
            painted-visible repainted-definition fitted-use unfitted-symbol not-clipped \
            pattern-without-image pattern-tile marker-not-turned marker-size marker-place extra-effect \
            current-colour group-opacity opacity-combined attribute-wins font-size-percentage \
            font-weight-reversed letter-spacing-in-style text-positions text-shift-up joined-words \
            text-blanks font-unspecified font-missing font-fallback missing-glyph text-cannot-be-set" ;;
        --interpreter) _orvprint_words "SVG SVG2" ;;
        --parser) _orvprint_words "light dom" ;;
        --paper) _orvprint_words "A0 A1 A2 A3 A4 A5 A6 B4 B5 SRA3 Letter Legal Tabloid Executive \
            ANSI-C ANSI-D ANSI-E Arch-C Arch-D Arch-E" ;;
        --orientation) _orvprint_words "auto portrait landscape" ;;
        --scale) _orvprint_words "fit fill none 50% 200%" ;;
        --align) _orvprint_words "centre left right top bottom top-left top-right bottom-left bottom-right" ;;
        --nup) _orvprint_words "2 4 6 8 9 12 16" ;;
        --dpi | --flatten-dpi) _orvprint_words "90 150 300 600 1200" ;;
        -o | --output | --files-from | --report | --resume | --merged | --html | --socket | --via) _orvprint_files '*' ;;
        --out-dir | --allow-dir) _orvprint_files '' ;;
        --zoom) _orvprint_words "0.5 2 3 4" ;;
        --background) _orvprint_words "white black transparent" ;;
        --width | --height | --export-id | --language | --font-size | --pages | --fragment | --max-primitives | --time-limit | --margin | --overlap | --stroke-scale | --min-stroke | \
            -j | --jobs | --shard | --retry | --listen | --workers | --queue | --max-request | --max-connections | --patience | \
            --jobs-per-worker) ;;
        *)
            case $current in
                -*) _orvprint_words "$options" ;;
                *)
                    if ((COMP_CWORD == 1)); then _orvprint_words "print info inspect check report serve formats limits printers"; fi
                    case $command in
                        report) _orvprint_files '*' ;;
                        serve | formats | limits | printers) ;;
                        *) _orvprint_files drawings ;;
                    esac
                    ;;
            esac
            ;;
    esac
}

# Adds the words that start with the current word.
_orvprint_words() {
    local word
    while IFS= read -r word; do COMPREPLY+=("$word"); done < <(compgen -W "$1" -- "$current")
}

# Adds folders and files: none, all, or only drawings (all if there are none).
_orvprint_files() {
    local path files=() folders=()
    compopt -o filenames 2>/dev/null # the shell then quotes, and puts a slash behind folders
    while IFS= read -r path; do
        if [ -d "$path" ]; then
            folders+=("$path")
            continue
        fi
        case $1:${path,,} in
            '*':* | drawings:*.svg | drawings:*.svgz | drawings:*.qvxml | drawings:*.gz) files+=("$path") ;;
        esac
    done < <(compgen -f -- "$current")
    if [ "$1" = drawings ] && [ ${#files[@]} = 0 ] && [ ${#folders[@]} = 0 ]; then
        while IFS= read -r path; do files+=("$path"); done < <(compgen -f -- "$current")
    fi
    COMPREPLY+=("${folders[@]}" "${files[@]}")
}

complete -F _orvprint orvprint
