'use strict';

// Whether the gateway is what it stands in for: the official client of PostgREST talks to it, and so do requests of the
// very form that the program sends.

const assert = require('node:assert/strict');
const { spawn } = require('node:child_process');
const { randomUUID } = require('node:crypto');
const { once } = require('node:events');
const net = require('node:net');
const path = require('node:path');
const { after, before, beforeEach, test } = require('node:test');
const { PostgrestClient } = require('@supabase/postgrest-js');
const { Gateway, kPublicKey } = require('../support/backend/Gateway');

let gateway;
let base;
before(async () => {
  gateway = await Gateway.start();
  base = `http://127.0.0.1:${gateway.port}`;
});
after(() => gateway.stop());
beforeEach(async () => {
  await gateway.database.exec('delete from blocks; delete from feedback_responses; delete from storage.objects');
});

function headersOf(userId) {
  return {
    Authorization: `Bearer ${kPublicKey}`,
    apikey: kPublicKey,
    ...(userId ? { 'x-tallowby-user-id': userId } : {}),
  };
}

function clientOf(userId) {
  return new PostgrestClient(`${base}/rest/v1`, { headers: headersOf(userId) });
}

function block(userId, members = {}) {
  return {
    id: randomUUID().toUpperCase(),
    user_id: userId,
    x_position: 12.5,
    y_position: -3,
    width: 300,
    height: 60,
    z_index: 1,
    block_type: 'text',
    content: { rows: 3, flag: true },
    raw_text: 'A note',
    embedding: Array(768).fill(0),
    tags: ['a'],
    is_todo: false,
    created_at: '2026-11-23T06:00:00.000Z',
    updated_at: '2026-11-23T06:00:00.125Z',
    ...members,
  };
}

function send(method, target, { userId, headers = {}, body } = {}) {
  return fetch(base + target, {
    method,
    headers: { ...headersOf(userId), ...headers },
    body: body === undefined || Buffer.isBuffer(body) || typeof body === 'string' ? body : JSON.stringify(body),
    redirect: 'manual',
  });
}

function upsert(userId, record) {
  return send('POST', '/rest/v1/blocks', {
    userId,
    headers: { 'Content-Type': 'application/json', Prefer: 'resolution=merge-duplicates' },
    body: record,
  });
}

function newUser() {
  return randomUUID().toUpperCase();
}

test('the official client reads back what it has written', async () => {
  const userId = newUser();
  const client = clientOf(userId);
  const older = block(userId, { updated_at: '2026-11-23T05:00:00Z' });
  const newer = block(userId);
  const deleted = block(userId, { deleted_at: '2026-11-23T06:30:00Z' });
  const written = await client.from('blocks').upsert([older, newer, deleted]);
  assert.deepEqual([written.error, written.status], [null, 201]);

  const live = client.from('blocks').select('*').eq('user_id', userId).is('deleted_at', null);
  const { data, error, status } = await live.order('updated_at', { ascending: false });
  assert.deepEqual([error, status], [null, 200]);
  assert.deepEqual(
    data.map((row) => row.id.toUpperCase()),
    [newer.id, older.id],
  );
  const { id, user_id, created_at, updated_at, ...same } = data[0];
  const { id: _, user_id: __, created_at: ___, updated_at: ____, ...sent } = newer;
  assert.deepEqual({ ...same, ...sent }, same, 'every other member comes back as it was sent');
  assert.equal(updated_at, '2026-11-23T06:00:00.125+00:00');

  const since = await client.from('blocks').select().gt('updated_at', '2026-11-23T05:30:00Z').is('deleted_at', null);
  assert.deepEqual(
    since.data.map((row) => row.id.toUpperCase()),
    [newer.id],
  );
});

test('the requests of the program, to the letter', async () => {
  const userId = newUser();
  const record = block(userId);
  const answer = await upsert(userId, record);
  assert.deepEqual([answer.status, await answer.text()], [201, '']);
  assert.equal((await upsert(userId, { ...record, raw_text: 'Edited' })).status, 201);

  const pull = `/rest/v1/blocks?user_id=eq.${userId}&deleted_at=is.null&order=updated_at.desc`;
  const rows = await send('GET', pull, { userId });
  assert.deepEqual([rows.status, rows.headers.get('content-range')], [200, '0-0/*']);
  assert.match(rows.headers.get('content-type'), /^application\/json/);
  assert.equal((await rows.json())[0].raw_text, 'Edited');
  const poll = await send('GET', `${pull}&updated_at=gt.2026-11-23T06:00:01Z`, { userId });
  assert.deepEqual([poll.headers.get('content-range'), await poll.text()], ['*/*', '[]']);
});

test('an answer has a thousand rows at most, and the parts after it fit together', async () => {
  const userId = newUser();
  const records = Array.from({ length: 2100 }, () => block(userId, { embedding: undefined, content: undefined }));
  assert.equal((await clientOf(userId).from('blocks').upsert(records)).error, null);
  const ordered = () => clientOf(userId).from('blocks').select().order('updated_at', { ascending: false }).order('id');
  assert.equal((await ordered()).data.length, 1000);

  const ids = new Set();
  const ranges = [];
  for (const range of ['0-999', '1000-1999', '2000-2999', '3000-3999']) {
    const headers = { Range: range };
    const answer = await send('GET', '/rest/v1/blocks?order=updated_at.desc,id.asc', { userId, headers });
    ranges.push(answer.headers.get('content-range'));
    (await answer.json()).forEach((row) => ids.add(row.id));
  }
  assert.deepEqual(ranges, ['0-999/*', '1000-1999/*', '2000-2099/*', '*/*']);
  assert.equal(ids.size, 2100);
  assert.equal((await ordered().range(2090, 2200)).data.length, 10);
  const upsideDown = await send('GET', '/rest/v1/blocks', { userId, headers: { Range: '9-3' } });
  assert.deepEqual([upsideDown.status, (await upsideDown.json()).code], [416, 'PGRST103']);
});

test('a stranger with the public key sees, changes and deletes nothing', async () => {
  const owner = newUser();
  const record = block(owner, { embedding: [1, ...Array(767).fill(0)] });
  await upsert(owner, record);
  const query = { query_embedding: record.embedding, match_threshold: 0.7, match_count: 10 };
  for (const stranger of [newUser(), undefined, '%', `${owner} `.padEnd(60, '0')]) {
    const client = clientOf(stranger);
    assert.deepEqual((await client.from('blocks').select().eq('user_id', owner)).data, []);
    assert.deepEqual((await client.rpc('search_blocks', query)).data, []);
    assert.equal((await client.from('blocks').delete().eq('id', record.id)).status, 204);
    const taken = await client.from('blocks').upsert({ ...record, user_id: stranger ?? owner });
    assert.ok([400, 401].includes(taken.status), `${taken.status}`);
  }
  const forged = await upsert(newUser(), { ...record, raw_text: 'forged' });
  assert.deepEqual([forged.status, (await forged.json()).code], [401, '42501']);
  const { data } = await clientOf(owner).rpc('search_blocks', query);
  assert.deepEqual(
    data.map((row) => [row.id.toUpperCase(), row.raw_text, row.embedding.length]),
    [[record.id, 'A note', 768]],
  );
  assert.equal((await clientOf(owner).from('blocks').delete().eq('user_id', owner)).status, 204);
  assert.deepEqual((await clientOf(owner).from('blocks').select()).data, []);
});

test('a search for zeros is an empty answer, one of another length is refused', async () => {
  const userId = newUser();
  await upsert(userId, block(userId));
  const search = (query_embedding) =>
    clientOf(userId).rpc('search_blocks', { query_embedding, match_threshold: 0.7, match_count: 10 });
  const zeros = await search(Array(768).fill(0));
  assert.deepEqual([zeros.status, zeros.data], [200, []]);
  const short = await search([1, 2, 3]);
  assert.deepEqual([short.status, short.error.code], [400, '22000']);
});

test('refusals have the status and the code of PostgREST', async () => {
  const userId = newUser();
  const other = newUser();
  const existing = block(userId);
  await upsert(userId, existing);
  const json = { 'Content-Type': 'application/json' };
  const cases = [
    ['POST', '/rest/v1/blocks', { body: '[{"id":', headers: json }, 400, 'PGRST102'],
    ['POST', '/rest/v1/blocks', { body: { ...existing, font_size: 16 }, headers: json }, 400, 'PGRST204'],
    ['POST', '/rest/v1/blocks', { body: [existing, { id: existing.id }], headers: json }, 400, 'PGRST102'],
    ['POST', '/rest/v1/blocks', { body: { ...existing, width: 'wide' }, headers: json }, 400, '22P02'],
    ['POST', '/rest/v1/blocks', { body: { ...existing, raw_text: 'a\u0000b' }, headers: json }, 400, '22P05'],
    ['POST', '/rest/v1/blocks', { body: { ...existing, updated_at: null }, headers: json }, 400, '23502'],
    ['POST', '/rest/v1/blocks', { body: { ...existing, content: [] }, headers: json }, 400, '23514'],
    ['POST', '/rest/v1/blocks', { body: { ...existing, user_id: other }, headers: json, userId: other }, 409, '23505'],
    ['POST', '/rest/v1/blocks', { body: 'x', headers: { 'Content-Type': 'text/plain' } }, 415, 'PGRST102'],
    ['GET', '/rest/v1/blocks?user_id=eq.nobody', {}, 400, '22P02'],
    ['GET', '/rest/v1/blocks?user_id=like.*', {}, 400, 'PGRST100'],
    ['GET', '/rest/v1/blocks?updated_at=gt.yesterday%20evening', {}, 400, '22007'],
    ['GET', '/rest/v1/blocks?colour=eq.red', {}, 400, '42703'],
    ['GET', '/rest/v1/blocks?order=updated_at.sideways', {}, 400, 'PGRST100'],
    ['GET', '/rest/v1/nothing', {}, 404, 'PGRST205'],
    ['DELETE', '/rest/v1/blocks', {}, 400, '21000'],
    ['POST', '/rest/v1/rpc/search_blocks', { body: { match_count: 1 }, headers: json }, 404, 'PGRST202'],
    ['GET', '/rest/v1/feedback_responses', {}, 401, '42501'],
    ['GET', '/rest/v1/blocks', { headers: { Authorization: 'Bearer forged' } }, 401, 'PGRST301'],
  ];
  for (const [method, target, options, status, code] of cases) {
    const answer = await send(method, target, { userId, ...options });
    const body = await answer.json();
    assert.deepEqual([answer.status, body.code], [status, code], `${method} ${target} ${JSON.stringify(body)}`);
    assert.deepEqual(Object.keys(body), ['code', 'details', 'hint', 'message']);
  }
  for (const apikey of ['', 'sb_publishable_other']) {
    assert.equal((await send('GET', '/rest/v1/blocks', { userId, headers: { apikey } })).status, 401);
  }
});

test('feedback goes in, with a voice note before it', async () => {
  const name = `${randomUUID().toUpperCase()}.m4a`;
  const upload = (target, type, size = 2000) =>
    send('POST', `/storage/v1/object/${target}`, { headers: { 'Content-Type': type }, body: Buffer.alloc(size, 1) });
  const uploaded = await upload(`feedback-audio/${name}`, 'audio/mp4');
  assert.deepEqual([uploaded.status, (await uploaded.json()).Key], [200, `feedback-audio/${name}`]);
  const refusals = [
    [`feedback-audio/${name}`, 'audio/mp4', 1, '409'],
    [`feedback-audio/${randomUUID()}.m4a`, 'text/html', 1, '415'],
    [`feedback-audio/${randomUUID()}.m4a`, 'audio/mp4', 25 * 1024 * 1024 + 1, '413'],
    ['feedback-audio/index.html', 'audio/mp4', 1, '403'],
    [`elsewhere/${name}`, 'audio/mp4', 1, '404'],
  ];
  for (const [target, type, size, statusCode] of refusals) {
    const answer = await upload(target, type, size);
    assert.deepEqual([answer.status, (await answer.json()).statusCode], [400, statusCode], target);
  }
  const { error, status } = await clientOf().from('feedback_responses').insert({
    app_version: 'unknown',
    usage_frequency: 'Rarely',
    overall_experience: 'Good',
    most_used_feature: 'Sketching',
    blocker: "Nothing, it's great",
    would_recommend: 'Probably',
    open_text: '',
    voice_note_path: `feedback-audio/${name}`,
  });
  assert.deepEqual([error, status], [null, 201]);
  const { rows } = await gateway.database.query(`
    select blocker, metadata ->> 'size' as size
    from feedback_responses join storage.objects on voice_note_path = bucket_id || '/' || name`);
  assert.deepEqual(rows, [{ blocker: "Nothing, it's great", size: '2000' }]);
});

test('requests are refused for what nobody has looked at', async () => {
  const answer = await send('GET', '/rest/v1/blocks', { headers: { Prefer: 'count=exact' } });
  assert.deepEqual([answer.status, (await answer.json()).code], [501, 'LOOPBACK']);
});

test('faults come once, in place of the right answer or after it, and the journal has every request', async () => {
  const userId = newUser();
  const administer = (method, target, body) => send(method, `/admin/${target}`, { body });
  await administer('GET', 'requests');
  const read = () => send('GET', '/rest/v1/blocks', { userId });
  const fault = (members) => administer('POST', 'faults', members);
  const write = () => upsert(userId, block(userId, { embedding: undefined }));

  await fault({ kind: 'status', status: 409, method: 'POST', path: '/rest/v1/blocks' });
  assert.equal((await read()).status, 200, 'it waits for the request that it is meant for');
  assert.equal((await write()).status, 409);
  assert.equal((await write()).status, 201);

  await fault({ kind: 'html' });
  assert.match(await (await read()).text(), /^<!DOCTYPE/);
  await fault({ kind: 'garbage' });
  await assert.rejects(async () => (await read()).json());
  await fault({ kind: 'redirect', location: 'http://127.0.0.1:9/elsewhere' });
  assert.equal((await read()).headers.get('location'), 'http://127.0.0.1:9/elsewhere');
  await fault({ kind: 'half' });
  await assert.rejects(async () => (await read()).text());
  await fault({ kind: 'drip', milliseconds: 0 });
  assert.equal((await (await read()).json()).length, 1);
  await fault({ kind: 'lost' });
  await assert.rejects(write());
  assert.equal((await (await read()).json()).length, 2, 'the row is there although nobody was told');
  await fault({ kind: 'close', times: 0 });
  await assert.rejects(write());
  await assert.rejects(read());
  await administer('DELETE', 'faults');
  assert.equal((await (await read()).json()).length, 2);

  const journal = await (await administer('GET', 'requests')).json();
  assert.deepEqual(
    journal.slice(0, 3).map(({ method, target }) => `${method} ${target}`),
    ['GET /rest/v1/blocks', 'POST /rest/v1/blocks', 'POST /rest/v1/blocks'],
  );
  assert.ok(journal[1].headers.includes('x-tallowby-user-id'));
  assert.equal(JSON.parse(journal[1].body).user_id, userId);
});

test('the program says its port, listens here alone, and ends with its standard input', async () => {
  const program = path.resolve(__dirname, '../support/backend/Gateway.js');
  const child = spawn(process.execPath, [program, '--seed'], { stdio: ['pipe', 'pipe', 'inherit'] });
  const ended = once(child, 'exit');
  const line = await Promise.race([once(child.stdout, 'data'), ended]);
  const [, port] = /^listening on 127\.0\.0\.1:(\d+)\n$/.exec(String(line));
  const seeded = new PostgrestClient(`http://127.0.0.1:${port}/rest/v1`, {
    headers: headersOf('5EED0000-0000-4000-8000-00000000A11A'),
  });
  assert.equal((await seeded.from('blocks').select()).data.length, 3);
  const socket = net.connect(Number(port), '127.0.0.2');
  await assert.rejects(once(socket, 'connect'), { code: 'ECONNREFUSED' });
  child.stdin.end();
  assert.deepEqual(await ended, [0, null]);
});
