'use strict';

// A real Postgres inside this process, in memory, with the migrations applied in the order of their time stamps.

const fs = require('node:fs');
const path = require('node:path');
const { PGlite } = require('@electric-sql/pglite');
const { pgtap } = require('@electric-sql/pglite-pgtap');
const { vector } = require('@electric-sql/pglite-pgvector');

const kSupabase = path.resolve(__dirname, '../../../supabase');
const kMigrationName = /^\d{14}_[a-z_]+\.sql$/;

function sqlFiles(folder) {
  const names = fs.readdirSync(path.join(kSupabase, folder)).sort();
  return names.map((name) => ({ name, sql: fs.readFileSync(path.join(kSupabase, folder, name), 'utf8') }));
}

function migrations() {
  const files = sqlFiles('migrations');
  const stray = files.find((file) => !kMigrationName.test(file.name));
  if (stray || files.length === 0) {
    throw new Error(`supabase/migrations: ${stray ? `${stray.name} bears no time stamp` : 'there are none'}`);
  }
  return files;
}

/** `hosted`: on a database that looks like the service's; otherwise on one that has nothing but Postgres. */
async function openDatabase({ hosted = true } = {}) {
  const database = await PGlite.create({ extensions: { pgtap, vector } });
  if (hosted) {
    await database.exec(fs.readFileSync(path.join(__dirname, 'service.sql'), 'utf8'));
  }
  for (const { name, sql } of migrations()) {
    await database.exec(sql).catch((error) => {
      throw new Error(`${name}: ${error.message}`);
    });
  }
  return database;
}

async function seed(database) {
  await database.exec(fs.readFileSync(path.join(kSupabase, 'seed.sql'), 'utf8'));
}

module.exports = { openDatabase, seed, sqlTests: () => sqlFiles('tests') };
