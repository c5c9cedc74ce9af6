# Makes explicit what readers of a header take for granted, so that Doxygen reports only what is really undocumented. The
# numbers of the lines stay.
#   - Every header documents its file-level names.
#   - A getter directly below its documented setter needs no words of its own.
#   - MetaClass() and comparisons of all members are the same everywhere.
#   - What is said behind several variables of one line is true of each.

/^#pragma once$/ { $0 = "/// @file" }

/^ +[A-Za-z_:0-9]+ [a-z][A-Za-z0-9]*( = [^,;(]+)?(, [a-z][A-Za-z0-9]*( = [^,;(]+)?)+; +\/\/\/< / {
    split($0, parts, / *; +\/\/\/< /)
    match(parts[1], /^ +[A-Za-z_:0-9]+ /)
    type = substr(parts[1], 1, RLENGTH)
    count = split(substr(parts[1], RLENGTH + 1), names, /, /)
    for (i = 1; i <= count; ++i) printf "%s%s; /**< %s */", type, names[i], parts[2]
    print ""
    is_documented = 0
    next
}

/^ *\/\/\/ / { is_documented = 1; print; next }

{
    words = ""
    if (match($0, / Set[A-Za-z]+\(/)) {
        name = substr($0, RSTART + 4, RLENGTH - 5)
        setter = is_documented ? name : ""
    } else if (setter != "" && match($0, "[ &*](Get|Is)" setter "\\(")) {
        if (!is_documented) words = "@copydoc Set" setter
        setter = ""
    } else if (!is_documented && /static const ORVMetaClass& MetaClass\(\);$/) {
        words = "The description of this class."
    } else if (!is_documented && /operator==\(.*\) (const )?= default;$/) {
        words = "Compares all of both."
    }
    if (words != "" && /\}$|;$/) $0 = $0 "  ///< " words
    # What stands within the braces of a documented name is not the next name.
    is_documented = 0
    print
}
