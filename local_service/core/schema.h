// SPDX-License-Identifier: Apache-2.0
// The store's tables.
#pragma once

namespace local_service {

/// Number of this layout, kept in the database as its user version.
inline constexpr int schema_version = 2;

/// `entry` holds every list of plain texts, under the list's name; the identifiers give the order of entry. `exception`
/// belongs to the entry of the object that it is an exception of. In `failing`, 0 times means always.
inline constexpr const char* create_tables = R"(
CREATE TABLE framework (
    id INTEGER PRIMARY KEY CHECK (id = 1),
    now INTEGER NOT NULL,
    after_restart INTEGER NOT NULL,
    secret_scene INTEGER NOT NULL,
    restarts INTEGER NOT NULL,
    requested_restarts INTEGER NOT NULL);
CREATE TABLE module (
    number INTEGER PRIMARY KEY,
    now INTEGER NOT NULL,
    after_restart INTEGER NOT NULL);
CREATE TABLE log (
    id INTEGER PRIMARY KEY AUTOINCREMENT,
    time_ms INTEGER NOT NULL,
    level INTEGER NOT NULL,
    tag TEXT NOT NULL,
    function TEXT NOT NULL,
    message TEXT NOT NULL);
CREATE TABLE entry (
    id INTEGER PRIMARY KEY,
    list TEXT NOT NULL,
    text TEXT NOT NULL,
    UNIQUE (list, text));
CREATE TABLE exception (
    id INTEGER PRIMARY KEY,
    object INTEGER NOT NULL REFERENCES entry (id) ON DELETE CASCADE,
    kind INTEGER NOT NULL,
    text TEXT NOT NULL,
    UNIQUE (object, kind, text));
CREATE TABLE whitelist (
    id INTEGER PRIMARY KEY,
    path TEXT NOT NULL UNIQUE,
    digest TEXT NOT NULL);
CREATE TABLE net_policy (
    id INTEGER PRIMARY KEY,
    uid INTEGER NOT NULL,
    kind TEXT NOT NULL,
    name TEXT NOT NULL,
    status INTEGER NOT NULL,
    text1 TEXT NOT NULL,
    text2 TEXT NOT NULL,
    text3 TEXT NOT NULL,
    tag INTEGER NOT NULL,
    UNIQUE (uid, kind, name));
CREATE TABLE failing (
    id INTEGER PRIMARY KEY,
    call TEXT NOT NULL,
    result INTEGER NOT NULL,
    times INTEGER NOT NULL,
    after INTEGER NOT NULL,
    error TEXT NOT NULL);
)";

/// Takes away the states and policies, and leaves the log and the wishes for failures.
inline constexpr const char* clear_policies = R"(
DELETE FROM framework;
DELETE FROM module;
DELETE FROM exception;
DELETE FROM entry;
DELETE FROM whitelist;
DELETE FROM net_policy;
)";

/// What a new store holds: framework and secret scene off, every module off.
inline constexpr const char* insert_initial_rows = R"(
INSERT INTO framework VALUES (1, 0, 0, 0, 0, 0);
INSERT INTO module VALUES (0, 0, 0), (1, 0, 0), (2, 0, 0), (3, 0, 0), (4, 0, 0), (5, 0, 0), (7, 0, 0), (11, 0, 0);
)";

}  // namespace local_service
