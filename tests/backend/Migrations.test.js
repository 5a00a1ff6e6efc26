'use strict';

// Runs the SQL tests of supabase/tests, as `supabase test db` does, each in its own transaction.

const assert = require('node:assert/strict');
const { after, before, test } = require('node:test');
const { openDatabase, seed, sqlTests } = require('../support/backend/Database');

let database;
before(async () => {
  database = await openDatabase();
  await seed(database);
});
after(() => database.close());

function tapLines(results) {
  return results
    .flatMap((result) => result.rows.flatMap((row) => Object.values(row)))
    .filter((value) => typeof value === 'string')
    .flatMap((value) => value.split('\n'));
}

const files = sqlTests();
test('there are SQL tests', () => assert.ok(files.length >= 4));

for (const { name, sql } of files) {
  test(name, async () => {
    const lines = tapLines(await database.exec(sql));
    const planned = Number(lines.find((line) => /^1\.\.\d+$/.test(line))?.slice(3));
    const ran = lines.filter((line) => /^(not )?ok \d+/.test(line));
    const complaints = lines.filter((line) => /^(not ok|#)/.test(line));
    assert.equal(complaints.join('\n'), '');
    assert.equal(ran.length, planned);
  });
}

test('the seed is a canvas of its own user, and can be sown twice', async () => {
  await seed(database);
  const { rows } = await database.query('select distinct user_id, count(*)::integer from blocks group by user_id');
  assert.deepEqual(rows, [{ user_id: '5eed0000-0000-4000-8000-00000000a11a', count: 3 }]);
});

test('the migrations apply to a Postgres that has nothing of the service', async () => {
  const plain = await openDatabase({ hosted: false });
  const { rows } = await plain.query(`select has_table_privilege('anon', 'blocks', 'select') as reads,
    has_table_privilege('anon', 'feedback_responses', 'select') as reads_answers`);
  assert.deepEqual(rows, [{ reads: true, reads_answers: false }]);
  await plain.close();
});
