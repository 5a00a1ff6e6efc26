'use strict';

// The backend on the loopback interface: the paths of the hosted service over a Postgres in this process.
//
//   node Gateway.js [--seed]
//
// prints `listening on 127.0.0.1:PORT` when it is ready and ends when its standard input does, so that it never
// outlives the test that started it. The one public key that it takes is kPublicKey. Beside the service's own paths:
//
//   POST /admin/faults      the next requests meet a fault: see Faults.js
//   DELETE /admin/faults    and no longer
//   GET /admin/requests     the requests since the last time that this was asked, as they came

const http = require('node:http');
const { ApiError } = require('./ApiError');
const { openDatabase, seed } = require('./Database');
const { Faults, meet } = require('./Faults');
const { RestApi } = require('./RestApi');
const { StorageApi } = require('./StorageApi');

const kPublicKey = 'sb_publishable_loopback';
const kLargestBody = 64 * 1024 * 1024;
const kLongestJournal = 10000;

class Gateway {
  #faults = new Faults();
  #journal = [];

  static async start({ withSeed = false } = {}) {
    const gateway = new Gateway();
    gateway.database = await openDatabase();
    if (withSeed) {
      await seed(gateway.database);
    }
    gateway.rest = await RestApi.over(gateway.database);
    gateway.storage = new StorageApi(gateway.database, gateway.rest);
    gateway.server = http.createServer((request, response) => gateway.#serve(request, response));
    await new Promise((resolve) => gateway.server.listen(0, '127.0.0.1', resolve));
    gateway.port = gateway.server.address().port;
    return gateway;
  }

  async stop() {
    this.server.closeAllConnections();
    await new Promise((resolve) => this.server.close(resolve));
    await this.database.close();
  }

  async #serve(incoming, response) {
    try {
      const request = await received(incoming);
      if (request.url.pathname.startsWith('/admin/')) {
        send(response, this.#administer(request));
        return;
      }
      const { method, text: body } = request;
      this.#journal.push({ method, target: incoming.url, headers: incoming.rawHeaders, body });
      this.#journal.splice(0, this.#journal.length - kLongestJournal);
      const fault = this.#faults.take(request);
      if (fault) {
        await meet(fault, response, () => this.#answer(request));
      } else {
        send(response, await this.#answer(request));
      }
    } catch (error) {
      process.stderr.write(`${error.stack}\n`);
      response.destroy();
    }
  }

  async #answer(request) {
    const { apikey, authorization } = request.headers;
    if (!apikey) {
      return json(401, { message: 'No API key found in request', hint: 'No `apikey` request header was found.' });
    }
    if (apikey !== kPublicKey) {
      return json(401, { message: 'Invalid API key', hint: 'Double check the API key.' });
    }
    try {
      if (authorization !== undefined && authorization !== `Bearer ${kPublicKey}`) {
        throw new ApiError(401, 'PGRST301', 'No suitable key or wrong key type');
      }
      if (request.url.pathname.startsWith('/rest/v1/')) {
        return await this.rest.handle(request);
      }
      if (request.url.pathname.startsWith('/storage/v1/')) {
        return await this.storage.handle(request);
      }
      return json(404, { message: 'no Route matched with those values' });
    } catch (error) {
      if (error instanceof ApiError) {
        return json(error.status, error.body);
      }
      throw error;
    }
  }

  #administer(request) {
    switch (`${request.method} ${request.url.pathname}`) {
      case 'POST /admin/faults':
        this.#faults.add(JSON.parse(request.text));
        return { status: 204, headers: {}, body: '' };
      case 'DELETE /admin/faults':
        this.#faults.clear();
        return { status: 204, headers: {}, body: '' };
      case 'GET /admin/requests':
        return json(200, this.#journal.splice(0));
      default:
        return json(404, { message: 'there is no such switch' });
    }
  }
}

async function received(incoming) {
  const parts = [];
  let size = 0;
  for await (const part of incoming) {
    size += part.length;
    if (size > kLargestBody) {
      throw new Error('a request of more than 64 MiB');
    }
    parts.push(part);
  }
  const body = Buffer.concat(parts);
  const url = new URL(incoming.url, 'http://127.0.0.1');
  return { method: incoming.method, url, headers: incoming.headers, body, text: body.toString('utf8') };
}

function json(status, value) {
  return { status, headers: { 'Content-Type': 'application/json; charset=utf-8' }, body: JSON.stringify(value) };
}

function send(response, { status, headers, body }) {
  response.writeHead(status, headers).end(body);
}

async function main() {
  const gateway = await Gateway.start({ withSeed: process.argv.includes('--seed') });
  process.stdin.on('end', () => process.exit(0)).resume();
  process.stdout.write(`listening on 127.0.0.1:${gateway.port}\n`);
}

if (require.main === module) {
  main().catch((error) => {
    process.stderr.write(`${error.stack}\n`);
    process.exit(1);
  });
}

module.exports = { Gateway, kPublicKey };
