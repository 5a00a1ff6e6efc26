-- The survey: everybody hands in, nobody reads.
begin;
create extension if not exists pgtap with schema extensions;
set local search_path = public, extensions;
select plan(14);

create function pg_temp.answer(open_text text, voice_note_path text) returns text language sql as $$
  select format(
    'insert into public.feedback_responses (app_version, usage_frequency, overall_experience, most_used_feature,
       blocker, would_recommend, open_text, voice_note_path)
     values (''1.0'', ''Once a day'', ''Love it'', ''Text notes'', ''Nothing, it''''s great'', ''Definitely'', %L, %L)',
    open_text, voice_note_path)
$$;

delete from feedback_responses;
set local role anon;
select lives_ok(pg_temp.answer('', null), 'an answer without a word');
select lives_ok(pg_temp.answer('More, please', 'feedback-audio/0F0F0F0F-0000-4000-8000-000000000001.m4a'),
  'an answer with a voice note');
select throws_ok(pg_temp.answer(repeat('x', 100001), null), '23514', null, 'an answer without end');
select throws_ok(pg_temp.answer('', 'other-bucket/0F0F0F0F-0000-4000-8000-000000000001.m4a'), '23514', null,
  'a voice note from elsewhere');
select throws_ok(
  $$insert into feedback_responses (id, app_version) values (gen_random_uuid(), '1.0')$$, '42501', null,
  'nobody chooses the id of an answer');
select throws_ok('select * from feedback_responses', '42501', null, 'nobody reads answers');
select throws_ok('update feedback_responses set open_text = ''''', '42501', null, 'nobody changes them');
select throws_ok('delete from feedback_responses', '42501', null, 'nobody deletes them');

select lives_ok(
  $$insert into storage.objects (bucket_id, name)
    values ('feedback-audio', '0F0F0F0F-0000-4000-8000-000000000001.m4a')$$,
  'a voice note is left');
select throws_ok(
  $$insert into storage.objects (bucket_id, name) values ('feedback-audio', '../page.html')$$, '42501', null,
  'under a name of that form only');
select is_empty('select * from storage.objects', 'nobody lists voice notes');
select is_empty('update storage.objects set name = name returning 1', 'nobody replaces them');
reset role;

select is(count(*), 2::bigint, 'both answers are there') from feedback_responses;
select results_eq(
  $$select public, file_size_limit, allowed_mime_types from storage.buckets where id = 'feedback-audio'$$,
  $$values (false, 26214400::bigint, '{audio/mp4}'::text[])$$, 'the bucket is private and has limits');

select * from finish();
rollback;
