#pragma once

#include <string>

// Path strings as the pipelines and the front end take them apart, and what they name on disk. Trailing
// slashes are ignored (except for the root "/"); a leading dot of a component does not start an extension.

// The last component: "/a/b.mpp" -> "b.mpp"; "/" -> "/".
std::string lastPathComponent(const std::string& path);

// The extension of the last component without its dot: "/a/b.MPP" -> "MPP"; "/a/.hidden" -> "".
std::string pathExtension(const std::string& path);

// pathExtension with ASCII letters lower-cased, for comparing with "mpp", "mpt" or "tvnx".
std::string lowercasedPathExtension(const std::string& path);

// The path without the extension of its last component and its dot: "/a/b.c.mpp" -> "/a/b.c".
std::string deletingPathExtension(const std::string& path);

// The path without its last component: "/a/b" -> "/a", "/a" -> "/", "a" -> "".
std::string deletingLastPathComponent(const std::string& path);

// `component` appended with one separating slash; an empty `path` gives `component` alone.
std::string appendingPathComponent(const std::string& path, const std::string& component);

// What a path names on disk, following links.
enum class FileKind { Missing, File, Directory };
FileKind fileKindAtPath(const std::string& path);

// Whether anything (file, folder, or a link to either) exists at `path`.
bool pathExists(const std::string& path);

// Deletes a file or a whole folder tree; a failure is ignored.
void removeItemIgnoringErrors(const std::string& path);

// `path` itself when nothing exists there; else the first free "<stem>-<n>.<ext>" for n = 1, 2, ...,
// where stem and extension stay those of `path` ("a.tvnx" -> "a-1.tvnx" -> "a-2.tvnx").
std::string firstFreeNumberedPath(const std::string& path);
